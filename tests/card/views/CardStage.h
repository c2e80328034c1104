#pragma once

#include "card/CardController.h"
#include "card/views/CardPanelWindow.h"
#include "card/views/CardView.h"
#include "support/FakeAIClient.h"
#include "support/FakeDesktop.h"
#include "support/Notebook.h"
#include "support/ViewStage.h"

namespace nimbrelle {

/// The real card with its controller on a desktop that is not there; the user's part is played by the names
/// of what there is to see and to press.
struct CardStage : ViewStage {
    explicit CardStage(double scale = 1) : theme(scale)
    {
        use(view);
        theme.applyToApplication();
        panel.setView(view);
    }

    void lookup(const Explanation &answer)
    {
        controller.lookup(answer.headword, answer.sentence, {640, 600});
        ai.reply(answer);
        settle();
    }
    Notebook notebook;
    FakeAI ai;
    FakeScreens screens;
    FakeSpeaker speaker;
    FakeWindowSystem windowSystem{true};
    Theme theme;
    PageSource source = Notebook::page("https://www.example.org/a");
    CardPanelWindow panel{theme, windowSystem};
    CardController controller{notebook.clock, notebook.config, notebook.store, ai.factory(), screens, panel,
        [this](std::stop_token) -> QCoro::Task<PageSource> { co_return source; }};
    CardView view{{.theme = theme, .controller = controller, .words = notebook.store, .speaker = speaker}};
};

} // namespace nimbrelle
