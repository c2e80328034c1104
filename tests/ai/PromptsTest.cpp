#include "ai/Prompts.h"

#include "notebook/Catalogue.h"
#include "support/Printers.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

QByteArray hashOf(const QString &prompt)
{
    return QCryptographicHash::hash(prompt.toUtf8(), QCryptographicHash::Sha256).toHex();
}

// Whoever changes a prompt on purpose changes its hash here; nobody changes one by accident.
TEST(Prompts, StandToTheCharacter)
{
    EXPECT_EQ(hashOf(prompts::explain()), "22b37caab50af33b71fd278a017ca9117d7b597c5b40f8988028cd6484ce62b9");
    EXPECT_EQ(hashOf(prompts::lookup()), "c578fad55b56835e3f81c5b8285c7586486818d138dbf45316095733b86b6d20");
    EXPECT_EQ(
        hashOf(prompts::translate()), "b002f900ff7fac712b94ef921e261ea25a6fb018d5948fa8a1766329b6161c1b");
    EXPECT_EQ(
        hashOf(prompts::mnemonic()), "abd65aea208d1d9fcc2b2a2d4dae82f1064ca75e6c9c206bee86bfc986195c91");
}

TEST(Prompts, HaveOneBlankBeforeTheListOfAffixes)
{
    EXPECT_TRUE(
        prompts::explain().contains(u"Choose ONLY from this list: "_s + affixApiList() + u"; return"_s));
    EXPECT_TRUE(prompts::lookup().endsWith(
        u"ONLY from this list: "_s + affixApiList() + u"; [] for names or if none apply"_s));
    for (const QString &prompt :
        {prompts::explain(), prompts::lookup(), prompts::translate(), prompts::mnemonic()}) {
        EXPECT_FALSE(prompt.endsWith(u'\n'));
        EXPECT_FALSE(prompt.contains(u'\r'));
    }
}

} // namespace
