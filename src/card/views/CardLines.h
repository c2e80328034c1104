#pragma once

#include "card/AskContext.h"
#include "notebook/Unlock.h"

#include <QFrame>

#include <functional>

/// The lines of a word card; null for a line without content.
namespace nimbrelle {

class Theme;

QWidget *makeFormAndGrammarLine(const Theme &theme, const Explanation &explanation);

QWidget *makeDerivationLine(const Theme &theme, const Explanation &explanation);

QFrame *makeUnlockBanner(const Theme &theme, const Unlock &unlock);

/// Two ready-made questions, and a button to type another.
QWidget *makeAskButtons(const Theme &theme, QuickQuestion primary, QuickQuestion secondary,
    const std::function<void(std::optional<QuickQuestion>)> &ask);

} // namespace nimbrelle
