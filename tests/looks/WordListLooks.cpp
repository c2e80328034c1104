#include "looks/Looks.h"
#include "wordbook/views/WordListStage.h"

#include <QScrollArea>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

void showWordList(const Look &look, const Show &show)
{
    WordListStage stage(look.scale, look.scheme);
    stage.open();
    show(stage.view, "empty");
    stage.fill();
    show(stage.view, "unchosen");
    stage.click("wordRows", u"regression"_s);
    show(stage.view, "word");
    auto *detail = stage.hand.find<QScrollArea>("detail");
    detail->verticalScrollBar()->setValue(detail->verticalScrollBar()->maximum());
    show(stage.view, "word-end");
    stage.click("wordRows", u"take it with a grain of salt and then some more"_s);
    stage.hand.key(Qt::Key_Delete);
    show(stage.view, "deleted");
    stage.hand.press("undoDeletion");
    stage.click("wordRows", u"regression"_s);
    // The narrowest, or what a screen of 1280 has room for.
    stage.view.resize(stage.view.minimumSize().expandedTo({qRound(576 * look.scale), 0}));
    show(stage.view, "narrow");
    // Twice as large a text is wider than that, and then moves sideways.
    if (look.scale == 1)
        EXPECT_LE(detail->widget()->width(), detail->viewport()->width());
    else
        EXPECT_GE(detail->horizontalScrollBar()->maximum(),
            detail->widget()->width() - detail->viewport()->width());
    stage.view.resize(stage.view.sizeHint());
    stage.click("wordRows", u"ngl"_s);
    show(stage.view, "bare");
    stage.hand.press("tab1");
    stage.click("grammarRows", u"被动语态"_s);
    show(stage.view, "grammar");
    stage.hand.press("tab2");
    stage.click("affixRows", u"re-"_s);
    show(stage.view, "affix");
    stage.click("affixRows", u"in-"_s);
    show(stage.view, "affix-locked");
    stage.hand.press("tab3");
    stage.click("noteRows", u"为什么这么用？"_s);
    show(stage.view, "note");
}

} // namespace nimbrelle
