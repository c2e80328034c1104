#pragma once

#include "card/AskSession.h"
#include "card/views/AskView.h"
#include "support/TalkStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

/// The Ask window over a notebook of its own.
struct AskStage : TalkStage {
    explicit AskStage(double scale = 1, Theme::Scheme scheme = Theme::Scheme::light)
        : TalkStage(scale, scheme)
    {
        session.start(wordContext(), std::nullopt);
        ViewStage::show(view, theme, {460, 600});
    }

    static AskContext wordContext()
    {
        return {.original = u"I was reluctant to rewrite the whole parser, but the old one kept crashing on "
                            u"empty lines."_s,
            .translation = u"我本来不太愿意重写整个解析器，可旧的那个一碰到空行就崩溃。"_s,
            .focusWord = u"reluctant"_s,
            .explanation = Notebook::explained("reluctant")};
    }
    static AskContext longContext()
    {
        return {.original = u"If you are on a slow connection, consider raising the timeout before filing a "
                            u"bug: most of these reports turn out to be flaky networks rather than a "
                            u"regression, and nobody can help you with those."_s,
            .translation = u"网络慢的话，先把超时时间调大，再去提交 bug。"_s};
    }

    AskSession session{notebook.clock, notebook.config, notebook.store, ai.factory()};
    AskView view{theme, session};
    ViewStage user{view};
};

} // namespace nimbrelle
