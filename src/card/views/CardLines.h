#pragma once

#include "card/AskContext.h"
#include "notebook/Unlock.h"
#include "widgets/Theme.h"

#include <QFrame>

#include <functional>

/// The lines of a word card; null for a line without content.
namespace nimbrelle {

QWidget *makeFormAndGrammarLine(const Theme &theme, const Explanation &explanation);

QWidget *makeDerivationLine(const Theme &theme, const Explanation &explanation);

QFrame *makeUnlockBanner(const Theme &theme, const Unlock &unlock);

/// Two ready-made questions, and a button to type another.
QWidget *makeAskButtons(const Theme &theme, QuickQuestion primary, QuickQuestion secondary,
    const std::function<void(std::optional<QuickQuestion>)> &ask);

/// The largest in which no single word of the text has to break, else the smallest.
TextType typeFitting(const Theme &theme, const QString &text, int available);

} // namespace nimbrelle
