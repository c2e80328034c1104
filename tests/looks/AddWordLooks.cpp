#include "ai/AIError.h"
#include "looks/Looks.h"
#include "wordbook/views/AddWordStage.h"

#include <QScrollArea>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

void showAddWord(const Look &look, const Show &show)
{
    AddWordStage stage(look.scale, look.scheme);
    show(stage.view, "empty");
    stage.hand.press("addSentence");
    show(stage.view, "sentence");
    stage.look(u"放弃"_s);
    show(stage.view, "running");
    stage.ai.fail(AIError(AIError::Kind::noKey));
    show(stage.view, "error");
    stage.notebook.save("give up");
    stage.model.reset();
    stage.look(u"放弃"_s, giveUp());
    show(stage.view, "found");
    stage.view.resize(stage.view.minimumWidth(), stage.view.height());
    show(stage.view, "narrow");
    stage.view.resize(stage.view.sizeHint());
    stage.hand.press("save");
    show(stage.view, "saved");

    LookupResult full = giveUp();
    full.corrected = true;
    full.explanation.headword = u"pneumonoultramicroscopicsilicovolcanoconiosis"_s;
    for (int i = 0; i < 6; ++i)
        full.alternatives->append({u"a rather long way to say the same thing as before"_s,
            u"很长的说明，用来看一看一行放不下的时候会怎么样，应该换行而不是被切掉"_s});
    stage.look(u"pneumono"_s, full);
    show(stage.view, "full");
    if (look.scale == 1) // else the screen has no room for it
        EXPECT_EQ(stage.view.height(), stage.theme.points(560));
    EXPECT_GT(stage.hand.find<QScrollArea>("preview")->verticalScrollBar()->maximum(), 0);
    EXPECT_TRUE(stage.view.rect().contains(
        stage.hand.find("save")->mapTo(&stage.view, stage.hand.find("save")->rect().bottomRight())));
}

} // namespace nimbrelle
