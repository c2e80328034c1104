#pragma once

#include "card/AskContext.h"
#include "card/CardText.h"
#include "shell/views/FlowLayout.h"
#include "shell/views/ReadText.h"

#include <QFrame>
#include <QLabel>

#include <functional>

class QPushButton;

/// The lines of a word that the card, the word list and the add-word window share. A line with nothing to say
/// is made as null. Widths are in device-independent pixels.
namespace nimbrelle {

class Speaker;

/// Says the text aloud.
QPushButton *makeSpeakButton(const Theme &theme, Speaker &speaker, const QString &name, const QString &text);

QLabel *makeRegisterBadge(const Theme &theme, Register tone);

QWidget *makeFormAndGrammarLine(const Theme &theme, const Explanation &explanation);

QWidget *makeDerivationLine(const Theme &theme, const Explanation &explanation);

/// `room` is the widest that it may be; a longer text is cut in its middle.
QWidget *makeSourceLabel(const Theme &theme, const PageSource &source, bool showTitle, int room);

QFrame *makeUnlockBanner(const Theme &theme, const Unlock &unlock);

/// Two ready-made questions and a way to one of the user's own.
QWidget *makeAskButtons(const Theme &theme, QuickQuestion primary, QuickQuestion secondary,
    const std::function<void(std::optional<QuickQuestion>)> &ask);

/// A sentence with the word marked in it and its translation below, behind a rule. Either text may be empty.
QWidget *makeQuote(
    const Theme &theme, const QString &sentence, const QStringList &terms, const QString &translation);

/// Text to read with an object name; `what` tells a screen reader what it is.
ReadText *makeReadText(const Theme &theme, const QString &name, const QString &what, const QString &text,
    const ReadText::Look &look);

} // namespace nimbrelle
