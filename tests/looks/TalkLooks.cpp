#include "card/views/AskStage.h"
#include "coach/views/CoachStage.h"
#include "looks/Looks.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

void showAsk(const Look &look, const Show &show)
{
    AskStage stage(look.scale, look.scheme);
    show(stage.view, "empty");
    stage.user.press("chip0");
    show(stage.view, "waiting");
    stage.piece(
        u"这里 **reluctant** 的意思是“心里不想，但还是做了”。\n- 语气：客气、克制，比 **didn’t want to** "
        u"更正式一点\n- 搭配：be reluctant **to do**，后面直接跟动词原形\n- 换成 **hesitant**："
        u"变成“拿不定主意”，少了不情愿的味道"_s);
    stage.user.commit("那 unwilling 呢？");
    show(stage.view, "streaming");
    stage.end();
    stage.user.key(Qt::Key_Return);
    stage.piece(
        u"**unwilling** 更硬，是“不肯”，常常真的没做。\n\n- I was **unwilling** to pay. 我不肯付钱。"_s);
    stage.end();
    stage.user.press("save");
    show(stage.view, "talk");
    stage.user.press("chip3");
    stage.ai.fail(AIError(AIError::Kind::noKey));
    stage.user.commit("第一行");
    stage.user.key(Qt::Key_Return, Qt::ShiftModifier);
    stage.user.commit("第二行");
    show(stage.view, "error");
    stage.session.start(AskStage::longContext(), std::nullopt);
    ViewStage::settle();
    show(stage.view, "long");
    stage.user.press("fold");
    show(stage.view, "unfolded");
}

void showCoach(const Look &look, const Show &show)
{
    CoachStage stage(look.scale, look.scheme);
    show(stage.view, "waiting");
    stage.fail();
    show(stage.view, "failed");
    stage.user.press("retry");
    stage.brief(
        u"昨天你在读一篇讲配置迁移的帖子，顺手存了 **rewrite** 和 "
        u"**regression**。读得挺深，这两个词都是在长句"
        u"子里遇到的。\n\n**reluctant** 这次隔了 9 "
        u"天还记得，而且一次就想起来了。说明它已经从“见过”变成“认识”，"
        u"可以放心。\n\n今天这一轮大约 12 题，4 分钟。留意三个就够：\n- **deprecate**：看到 -ec- 就想“文档”\n"
        u"- **flaky**：雪花一样，时有时无\n\n轻松来，不做也没关系。最近在读的东西里，哪一句最让你卡住？"_s);
    show(stage.view, "briefing");
    stage.user.commit("今天只有 5 分钟");
    stage.user.key(Qt::Key_Return);
    stage.brief(u"5 分钟刚好一轮。只看 **deprecate** 和 **flaky**，其余的交给明天。"_s);
    show(stage.view, "talk");
}

} // namespace nimbrelle
