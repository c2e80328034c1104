#pragma once

#include "notebook/Catalogue.h"

#include <QLabel>

class QPushButton;

/// What the card, the notebook and the review share about showing a word. Widths are in device-independent
/// pixels.
namespace nimbrelle {

class Speaker;
class Theme;
struct PageSource;

/// Says the text aloud.
QPushButton *makeSpeakButton(const Theme &theme, Speaker &speaker, const QString &name, const QString &text);

QLabel *makeRegisterBadge(const Theme &theme, Register tone);

/// `room` is the widest that it may be; a longer text is cut in its middle. Null when nothing is known.
QWidget *makeSourceLabel(const Theme &theme, const PageSource &source, bool showTitle, int room);

/// An English sentence with the terms marked in it, its translation below. Either text may be empty.
QWidget *makeSentence(const Theme &theme, const QString &sentence, const QStringList &terms,
    const QString &translation, QWidget *parent = nullptr);

/// The sentence that something was met in, the same way behind a rule.
QWidget *makeQuote(
    const Theme &theme, const QString &sentence, const QStringList &terms, const QString &translation);

} // namespace nimbrelle
