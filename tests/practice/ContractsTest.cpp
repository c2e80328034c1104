#include "practice/Contracts.h"

#include "PracticeLexicon.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

namespace nimbrelle::practice {

static rapidjson::Document answerTo(const ChatRequest &request)
{
    const std::string content = answerContent(practiceLexicon(), request);
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag>(content.data(), content.size());
    return document;
}

TEST(Contracts, AreToldByThePromptBeforeTheQuestion)
{
    EXPECT_EQ(contractOf(contractRequest("...\"translation_zh\": the translation", "Query: not one")),
        Contract::translate);
    EXPECT_EQ(
        contractOf(contractRequest("... a dictionary search box ...", "Selection: x")), Contract::lookup);
    EXPECT_EQ(contractOf(contractRequest("", "Selection: x\nSurrounding text: (none)")), Contract::explain);
    EXPECT_EQ(contractOf(contractRequest("", "Query: x")), Contract::lookup);
    EXPECT_EQ(contractOf(contractRequest("", "要记的词：x（n. y）")), Contract::mnemonic);
    EXPECT_EQ(contractOf(contractRequest("", "Some text.")), Contract::translate);
    ChatRequest streamed = contractRequest("", "Query: x");
    streamed.stream = true;
    EXPECT_EQ(contractOf(streamed), Contract::conversation);
}

TEST(Contracts, ExplanationHasEveryKey)
{
    const auto json =
        answerTo(contractRequest("", "Selection: ran\nSurrounding text: He ran home yesterday."));
    ASSERT_TRUE(json.IsObject());
    for (const char *key : {"headword", "phonetic", "pos", "meaning_zh", "definition_en", "register",
             "register_note_zh", "sentence", "sentence_zh", "surface_form", "form_kind", "grammar",
             "grammar_note_zh", "family_root"})
        EXPECT_TRUE(json.HasMember(key) && json[key].IsString()) << key;
    EXPECT_TRUE(json["sentence_is_example"].IsBool());
    EXPECT_STREQ(json["inflections"]["past_participle"].GetString(), "run");
    EXPECT_TRUE(json["affixes"].IsArray());
}

TEST(Contracts, UnknownWordHasNoPhonetic)
{
    const auto json = answerTo(contractRequest("", "Selection: zxqy\nSurrounding text: (none)"));
    EXPECT_FALSE(json.HasMember("phonetic"));
    EXPECT_STREQ(json["meaning_zh"].GetString(), "练习词条：没有收录");
}

TEST(Contracts, TheOthersHaveTheirKeys)
{
    const auto lookup = answerTo(contractRequest("", "Query: 放弃"));
    EXPECT_FALSE(lookup["corrected"].GetBool());
    EXPECT_STREQ(lookup["alternatives"][0]["text"].GetString(), "quit");
    EXPECT_TRUE(lookup["about_zh"].IsString());
    const auto translation = answerTo(contractRequest("\"translation_zh\"", "It was deprecated."));
    EXPECT_STREQ(translation["key_terms"][0]["text"].GetString(), "deprecated");
    EXPECT_TRUE(
        answerTo(contractRequest("{\"tip_zh\": \"...\"}", "要记的词：run（v. 跑）"))["tip_zh"].IsString());
}

TEST(ChatRequest, TakesNothingThatIsNone)
{
    for (const char *text : {"", "[]", "{}", R"({"messages":[]})", R"({"messages":[1]})",
             R"({"messages":{}})", "{\"messages\":[{\"role\":\"u\",\"content\":\"\xff\"}]}"})
        EXPECT_FALSE(readChatRequest(text)) << text;
    EXPECT_FALSE(readChatRequest(std::string(100'000, '[')));
    const auto request = readChatRequest(R"({"messages":[{"role":"user","content":"a"}],"stream":true})");
    ASSERT_TRUE(request);
    EXPECT_TRUE(request->stream);
    EXPECT_EQ(request->question(), "a");
}

} // namespace nimbrelle::practice
