#pragma once

#include "ai/AIError.h"
#include "coach/CoachFacts.h"
#include "coach/CoachSession.h"
#include "coach/views/CoachView.h"
#include "support/TalkStage.h"

namespace nimbrelle {

/// The coach's window over a notebook of its own.
struct CoachStage : TalkStage {
    explicit CoachStage(double scale = 1, Theme::Scheme scheme = Theme::Scheme::light)
        : TalkStage(scale, scheme)
    {
        session.open();
        ViewStage::show(view, theme, {500, 680});
    }

    void fail() { TalkStage::fail(AIError(AIError::Kind::unauthorized)); }
    void brief(const QString &text)
    {
        piece(text);
        end();
    }

    CoachFacts facts{notebook.store, notebook.config, notebook.log};
    CoachHistory history{notebook.paths, notebook.clock};
    CoachSession session{history, notebook.clock, notebook.config,
        [this](Timestamp now) { return facts.build(now); }, ai.factory()};
    CoachView view{theme, session, facts, notebook.clock};
    ViewStage user{view};
};

} // namespace nimbrelle
