#pragma once

#include "notebook/WordEntry.h"

/// The notebook's words as a text file that Anki 2.1.55 and later imports: header lines, then one note a
/// line, its fields parted by tabs and read as HTML.
///
/// Anki knows a note again by the first column, its identifier, which is made of the headword: a second
/// import updates the note where it lies, with its scheduling, and makes no new one. The two variants are
/// files of their own, since one file's notes can have two types only if both exist in the reader's
/// collection under names that the file knows, and those differ from language to language.
namespace nimbrelle::AnkiNotes {

enum class Variant {
    cards, ///< 单词, 音标, 释义, 例句, 译文, 词形, 来源: for a note type with such fields
    cloze, ///< text and back: for Anki's own cloze type; the word is the gap in its sentence
};

QByteArray text(const QList<WordEntry> &entries, Variant variant, const AppConfig &config, Timestamp now);

} // namespace nimbrelle::AnkiNotes
