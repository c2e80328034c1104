#include "practice/Contracts.h"

#include "practice/Conversation.h"
#include "practice/Gloss.h"
#include "practice/JsonText.h"
#include "practice/Lookup.h"
#include "practice/Mnemonic.h"

namespace nimbrelle::practice {

static constexpr std::string_view queryMark = "Query: ";

static bool holds(std::string_view text, std::string_view part)
{
    return text.find(part) != std::string_view::npos;
}

Contract contractOf(const ChatRequest &request)
{
    const std::string_view system = request.systemText();
    const std::string_view user = request.question();
    if (request.stream || !request.wantsJson)
        return Contract::conversation;
    if (holds(system, "\"translation_zh\""))
        return Contract::translate;
    if (holds(system, "\"tip_zh\""))
        return Contract::mnemonic;
    if (holds(system, "dictionary search box"))
        return Contract::lookup;
    if (readExplainQuestion(user))
        return Contract::explain;
    if (user.starts_with(queryMark))
        return Contract::lookup;
    return readMnemonicQuestion(user) ? Contract::mnemonic : Contract::translate;
}

static void writeForms(JsonText &json, const std::vector<Form> &forms)
{
    json.key("inflections").object([&] {
        for (const Form &form : forms)
            json.member(nameOf(form.kind), form.text);
    });
}

static void writeWord(JsonText &json, const WordAnswer &word)
{
    json.member("headword", word.headword).memberUnlessEmpty("phonetic", word.phonetic);
    json.memberUnlessEmpty("pos", word.pos).member("meaning_zh", word.meaningZh);
    json.memberUnlessEmpty("definition_en", word.definitionEn).member("register", word.reg);
    json.member("register_note_zh", word.registerNoteZh).member("sentence", word.sentence);
    json.key("sentence_is_example").boolean(word.sentenceIsExample);
    json.member("sentence_zh", word.sentenceZh);
    writeForms(json, word.inflections);
    json.member("family_root", word.familyRoot);
    json.key("affixes").array([&] {
        for (const std::string &affix : word.affixes)
            json.string(affix);
    });
}

static std::string explanationJson(const WordAnswer &word)
{
    JsonText json;
    json.object([&] {
        writeWord(json, word);
        json.member("surface_form", word.surfaceForm).member("form_kind", nameOf(word.formKind));
        json.member("grammar", word.grammar).member("grammar_note_zh", word.grammarNoteZh);
    });
    return json.text();
}

/// Members named `text` and `meaning_zh`, for alternatives and key terms alike.
template <typename Pairs> static void writePairs(JsonText &json, std::string_view key, const Pairs &pairs)
{
    json.key(key).array([&] {
        for (const auto &pair : pairs)
            json.object([&] { json.member("text", pair.text).member("meaning_zh", pair.meaningZh); });
    });
}

static std::string lookupJson(const LookupAnswer &answer)
{
    JsonText json;
    json.object([&] {
        writeWord(json, answer.word);
        json.key("corrected").boolean(answer.corrected);
        json.member("about_zh", answer.aboutZh);
        writePairs(json, "alternatives", answer.alternatives);
    });
    return json.text();
}

static std::string translationJson(const TranslationAnswer &answer)
{
    JsonText json;
    json.object([&] {
        json.member("translation_zh", answer.translationZh);
        writePairs(json, "key_terms", answer.keyTerms);
    });
    return json.text();
}

static std::string tipJson(std::string_view tip)
{
    JsonText json;
    json.object([&] { json.member("tip_zh", tip); });
    return json.text();
}

static std::string_view withoutQueryMark(std::string_view user)
{
    return user.starts_with(queryMark) ? user.substr(queryMark.size()) : user;
}

std::string answerContent(const Lexicon &lexicon, const ChatRequest &request)
{
    const std::string user(request.question());
    switch (contractOf(request)) {
    case Contract::explain:
        return explanationJson(
            explain(lexicon, readExplainQuestion(user).value_or(ExplainQuestion{user, {}})));
    case Contract::lookup:
        return lookupJson(lookUp(lexicon, withoutQueryMark(user)));
    case Contract::translate:
        return translationJson(translate(lexicon, user));
    case Contract::mnemonic:
        return tipJson(
            tipFor(lexicon, readMnemonicQuestion(user).value_or(MnemonicQuestion{user, {}, {}, {}, {}})));
    case Contract::conversation:
        break;
    }
    return converse(lexicon, request);
}

} // namespace nimbrelle::practice
