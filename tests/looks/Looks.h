#pragma once

#include "widgets/Theme.h"

#include <functional>

class QWidget;

namespace nimbrelle {

struct Look {
    const char *name;
    Theme::Scheme scheme;
    double scale;
};

/// Checks a page as it stands and keeps its picture.
using Show = std::function<void(QWidget &page, const char *state)>;

/// Every state of a room's screens, one after another.
void showCard(const Look &look, const Show &show);
void showAsk(const Look &look, const Show &show);
void showCoach(const Look &look, const Show &show);
void showReview(const Look &look, const Show &show);
void showSettings(const Look &look, const Show &show);
void showAddWord(const Look &look, const Show &show);
void showWordList(const Look &look, const Show &show);

} // namespace nimbrelle
