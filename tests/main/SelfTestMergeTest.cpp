#include "main/SelfTestMerge.h"

#include "support/Printers.h"

#include <QTextStream>

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

TEST(SelfTestMerge, FindsEveryRuleKept)
{
    QString text;
    QTextStream out(&text);
    EXPECT_TRUE(SelfTest::runMerge(out)) << text.toStdString();
    EXPECT_TRUE(text.endsWith(QStringLiteral("\nOK 合并规则正常\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\n在学多出 2 个时放回：merge、deploy\n")))
        << text.toStdString();
    EXPECT_FALSE(text.contains(u'否'));
}

} // namespace
