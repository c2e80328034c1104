#include "ai/Contracts.h"

#include "ai/Prompts.h"
#include "frame/RecordCodec.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

template <class Reply> std::optional<Reply> replyOf(const char *json)
{
    return decode<Reply>(json, KeyStyle::fromSnakeCase);
}

TEST(Contracts, TextsAreCutByCharacters)
{
    const QString family = u"👨\u200D👩\u200D👧"_s; // one character, eight UTF-16 units
    const QString start = u"Selection: "_s + family.repeated(3000) + u"\nSurrounding text: "_s;
    EXPECT_EQ(explainMessage(family.repeated(3000), family.repeated(2000)), start + family.repeated(1500));
    EXPECT_EQ(explainMessage(u"a"_s, QString()), u"Selection: a\nSurrounding text: (none)"_s);
    EXPECT_EQ(explainMessage(u"a"_s, std::nullopt), u"Selection: a\nSurrounding text: (none)"_s);
    EXPECT_EQ(lookupMessage(family.repeated(300)), u"Query: "_s + family.repeated(200));
    EXPECT_EQ(translateMessage(family.repeated(5000)), family.repeated(4000));
}

TEST(Contracts, MnemonicNamesOnlyWhatThereIs)
{
    WordEntry word = wordNamed(u"reluctant"_s);
    word.pos = u"adj."_s;
    word.meaningZh = u"不情愿的"_s;
    word.affixes = QList<Affix>{};
    word.examples = {exampleOf(u"An older one."_s), exampleOf({})};
    const QString first = u"要记的词：reluctant（adj. 不情愿的）"_s;
    EXPECT_EQ(mnemonicMessage(word, {}, {}), first) << "only the newest sentence counts";

    word.examples[1].sentence = u"I was reluctant to post."_s;
    word.familyRoot = QString();
    word.affixes = {Affix::un, Affix::tion};
    EXPECT_EQ(mnemonicMessage(word, {u"give up"_s, u"run"_s}, {u"reddit.com"_s, u"Qt 文档"_s}),
        first
            + u"\n他遇到它的句子：I was reluctant to post.\n词根：\n词缀：un- -tion\n他已经掌握的词：give up, run"_s
            + u"\n他常看的网站和内容：reddit.com；Qt 文档"_s);
}

TEST(Contracts, LookupReplyIsOneFlatObject)
{
    const auto result = replyOf<LookupResult>(
        R"({"headword":"give up","meaning_zh":"放弃","aboutZh":"常用","corrected":false,"mood":[1],)"
        R"("inflections":{"past_participle":"given up"},)"
        R"("alternatives":[{"text":"quit","meaning_zh":"更口语","x":1}],"register":null})");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->explanation.headword, u"give up"_s);
    EXPECT_EQ(result->explanation.register_, std::nullopt);
    EXPECT_EQ(result->explanation.inflections->value(u"past_participle"_s), u"given up"_s) << "keys are data";
    EXPECT_EQ(result->aboutZh, u"常用"_s);
    EXPECT_EQ(result->corrected, false);
    EXPECT_EQ(result->alternatives, (QList<LookupResult::Alternative>{{u"quit"_s, u"更口语"_s}}));
}

TEST(Contracts, OneMemberOfAnotherTypeFailsTheReply)
{
    EXPECT_TRUE(replyOf<Explanation>(R"({"headword":"run","meaning_zh":"跑"})"));
    for (const char *json : {
             R"({"headword":"run","meaning_zh":null})",
             R"({"headword":"run","meaning_zh":"跑","phonetic":["x"]})",
             R"({"headword":"run","meaning_zh":"跑","sentence_is_example":1})",
             R"({"headword":"run","meaning_zh":"跑","affixes":["un-",1]})",
             "```json\n{\"headword\":\"run\",\"meaning_zh\":\"跑\"}\n```",
             R"({"headword":"run","meaning_zh":"跑"} done)",
         }) {
        EXPECT_FALSE(replyOf<Explanation>(json)) << json;
        EXPECT_FALSE(replyOf<LookupResult>(json)) << json;
    }
    EXPECT_TRUE(replyOf<Translation>(R"({"translation_zh":"译文"})"));
    EXPECT_FALSE(replyOf<Translation>(R"({"translation_zh":"译文","key_terms":[{"text":"x"}]})"));
}

// Whoever changes a prompt on purpose changes its hash here; nobody changes one by accident.
TEST(Prompts, AreUnchangedToTheCharacter)
{
    const auto hashOf = [](const QString &prompt) {
        return QCryptographicHash::hash(prompt.toUtf8(), QCryptographicHash::Sha256).toHex().first(16);
    };
    EXPECT_EQ(hashOf(prompts::explain()), "22b37caab50af33b");
    EXPECT_EQ(hashOf(prompts::lookup()), "c578fad55b56835e");
    EXPECT_EQ(hashOf(prompts::translate()), "b002f900ff7fac71");
    EXPECT_EQ(hashOf(prompts::mnemonic()), "abd65aea208d1d9f");
}

} // namespace
