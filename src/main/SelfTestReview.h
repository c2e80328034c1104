#pragma once

#include "frame/Timestamp.h"

class QTextStream;

namespace nimbrelle {
struct AppConfig;
class WordStore;
} // namespace nimbrelle

/// The checks of the review room and of the menu bar's word. All but runReview need nothing; none changes
/// data. Read by eye.
namespace nimbrelle::SelfTest {

/// How answers to an inflected word are judged, then the notebook's words by priority, the highest first.
void runReview(const WordStore &store, const AppConfig &config, Timestamp now, QTextStream &out);

/// Syllables, letter blanks and chunk blanks of sample words.
void runSpelling(QTextStream &out);

/// How answers to names of the always-spell list are judged.
void runSpellPractice(QTextStream &out);

/// Titles, wrapped sentences and what is highlighted in them.
void runMenuBar(QTextStream &out);

/// What the scheduler makes of four sequences of answers, each given when due.
void runFSRS(QTextStream &out);

} // namespace nimbrelle::SelfTest
