#include "main/SelfTestReview.h"

#include "support/Notebook.h"
#include "support/Printers.h"

#include <QTextStream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

template <class Routine> QString printed(Routine routine)
{
    QString text;
    QTextStream out(&text);
    routine(out);
    return text;
}

TEST(SelfTest, TracesTheScheduler)
{
    EXPECT_EQ(printed(SelfTest::runFSRS),
        uR"(一直答对：good→3.2天(S=3.2,D=5.3,L1) good→11.1天(S=11.1,D=5.3,L2) good→35.2天(S=35.2,D=5.3,L3) good→101.7天(S=101.7,D=5.3,L4) good→271.3天(S=271.3,D=5.2,L5)
开头很简单：easy→15.7天(S=15.7,D=3.2,L1) easy→147.9天(S=147.9,D=2.1,L3) good→365.0天(S=512.1,D=2.1,L4)
中间忘了：good→3.2天(S=3.2,D=5.3,L1) good→11.1天(S=11.1,D=5.3,L2) again→0.0天(S=2.2,D=6.8,L1) good→3.1天(S=3.1,D=6.8,L2) good→8.9天(S=8.9,D=6.8,L3)
总是费劲：hard→1.2天(S=1.2,D=6.5,L1) hard→1.8天(S=1.8,D=7.0,L1) hard→2.6天(S=2.6,D=7.5,L1) hard→3.5天(S=3.5,D=7.9,L1)
)"_s);
}

TEST(SelfTest, ShowsTheScaffolds)
{
    EXPECT_EQ(printed(SelfTest::runSpelling),
        uR"(reluctant：音节 re·luc·tant | 补字母 rel_ct_nt | 按块 re · luc · ____
unbelievable：音节 un·be·lie·vable | 补字母 unbel_ev_ble | 按块 un · be · ____ · able
decision：音节 de·ci·sion | 补字母 dec_s_on | 按块 de · __ · sion
deprecate：音节 dep·re·cate | 补字母 depr_c_te | 按块 dep · re · ____
kubernetes：音节 ku·ber·ne·tes | 补字母 kub_rn_tes | 按块 ku · ber · ne · ___
comment：音节 com·ment | 补字母 co_m_nt | 按块 com · ____
give up on：音节 gi·ve· up· on | 补字母 giv_ _p on | 按块 ____ · up · on
ngl：音节 ngl | 补字母 ng_ | 按块 （分不了，退回补字母）
)"_s);
}

TEST(SelfTest, ShowsTheMenuTexts)
{
    EXPECT_EQ(printed(SelfTest::runMenuBar), uR"(菜单栏：ngl → ngl
菜单栏：deprecate → deprecate
菜单栏：internationalization → internationaliz…
菜单栏：give up on → give up on
---
She was running late, so she ran.
加粗：running
---
Honestly I would never give up on a project
like this one just because the build is slow.
加粗：give up on
---
This API is Deprecated and will be removed.
加粗：Deprecated
---
that was kinda wild
加粗：（句子里没找到）
---
中文折行：
（表示某事）被正式宣布为过时、不推荐再使用的，以后版本会删除
)"_s);
}

TEST(SelfTest, JudgesNamesAndForms)
{
    const std::string names = printed(SelfTest::runSpellPractice).toStdString();
    EXPECT_THAT(names, HasSubstr("「claude」→ good 注意大写：Claude\n"));
    EXPECT_THAT(names, HasSubstr("「Cluade」→ hard 有两个字母顺序反了：Claude\n"));
    EXPECT_THAT(names, HasSubstr("「Hotel Califonil」→ again 跟着打一遍，手会记住它\n"));
}

TEST(SelfTest, RanksTheNotebook)
{
    Notebook notebook;
    notebook.save("first");
    notebook.store.setWantToLearn(notebook.save("wanted"), true);
    notebook.save("last");
    const std::string text = printed([&](QTextStream &out) {
        SelfTest::runReview(notebook.store, notebook.config.config(), notebook.clock.now(), out);
    }).toStdString();
    EXPECT_THAT(text, HasSubstr("「run」→ hard 意思对了！不过这里要用 run 的过去式：ran\n"));
    EXPECT_THAT(text, HasSubstr("送字母：r → ra → ran\n"));
    EXPECT_THAT(
        text, HasSubstr("优先级 wanted：1013.7（查 1 次，1 天）\n优先级 last：13.7（查 1 次，1 天）\n"));
    EXPECT_THAT(text, HasSubstr("你的生词本：3 个词；排在最前面的：wanted、last、first\n"));
}

} // namespace
