#include "practice/LexiconReader.h"

#include "practice/EmbeddedLexicon.h"

#include <algorithm>
#include <iterator>
#include <rapidjson/document.h>

namespace nimbrelle::practice {

using Value = rapidjson::Value;

static rapidjson::Document parsedArray(std::string_view json)
{
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag>(json.data(), json.size());
    if (document.HasParseError() || !document.IsArray())
        throw LexiconError("a word file is no JSON array");
    return document;
}

static const Value *memberOf(const Value &object, const char *name)
{
    if (!object.IsObject())
        throw LexiconError("something in a word file should be an object");
    const auto found = object.FindMember(name);
    return found == object.MemberEnd() ? nullptr : &found->value;
}

static std::string textOf(const Value &value, const char *name)
{
    if (!value.IsString())
        throw LexiconError(std::string(name) + " should be a text");
    return {value.GetString(), value.GetStringLength()};
}

static std::string requiredText(const Value &object, const char *name)
{
    const Value *value = memberOf(object, name);
    if (!value)
        throw LexiconError(std::string(name) + " is missing");
    return textOf(*value, name);
}

static std::string optionalText(const Value &object, const char *name)
{
    const Value *value = memberOf(object, name);
    return value ? textOf(*value, name) : std::string();
}

template <typename Read> static auto listOf(const Value &object, const char *name, Read read)
{
    std::vector<decltype(read(object))> out;
    const Value *value = memberOf(object, name);
    if (!value)
        return out;
    if (!value->IsArray())
        throw LexiconError(std::string(name) + " should be a list");
    for (const Value &element : value->GetArray())
        out.push_back(read(element));
    return out;
}

static std::vector<std::string> texts(const Value &object, const char *name)
{
    return listOf(object, name, [name](const Value &value) { return textOf(value, name); });
}

static std::vector<Form> formsOf(const Value &object)
{
    std::vector<Form> forms;
    const Value *inflections = memberOf(object, "inflections");
    if (!inflections || !inflections->IsObject())
        throw LexiconError("inflections are missing");
    for (const auto &member : inflections->GetObject()) {
        const auto kind = formKindOf(textOf(member.name, "form"));
        if (!kind)
            throw LexiconError("unknown form " + textOf(member.name, "form"));
        forms.push_back({*kind, textOf(member.value, "form")});
    }
    return forms;
}

static Sense readSense(const Value &object)
{
    return {requiredText(object, "pos"), requiredText(object, "meaning_zh"), formsOf(object)};
}

static ExampleSentence readSentence(const Value &object)
{
    return {requiredText(object, "en"), requiredText(object, "zh")};
}

static Alternative readAlternative(const Value &object)
{
    return {requiredText(object, "text"), requiredText(object, "meaning_zh")};
}

static void readFields(const Value &object, Entry &entry)
{
    entry.phonetic = requiredText(object, "phonetic");
    entry.reg = requiredText(object, "register");
    entry.definitionEn = requiredText(object, "definition_en");
    entry.noteZh = requiredText(object, "note_zh");
    entry.familyRoot = requiredText(object, "family_root");
    entry.affixes = texts(object, "affixes");
    entry.examples = listOf(object, "examples", readSentence);
    entry.tipZh = optionalText(object, "tip_zh");
    entry.chinese = texts(object, "chinese");
    entry.alternatives = listOf(object, "alternatives", readAlternative);
    entry.senses = listOf(object, "also", readSense);
    entry.senses.insert(entry.senses.begin(), readSense(object));
    const Value *basic = memberOf(object, "basic");
    entry.isBasic = basic && basic->IsTrue();
}

static Entry readEntry(const Value &object)
{
    Entry entry;
    entry.headword = requiredText(object, "headword");
    try {
        readFields(object, entry);
    } catch (const LexiconError &error) {
        throw LexiconError(entry.headword + ": " + error.what());
    }
    return entry;
}

std::vector<Entry> readEntries(std::string_view json)
{
    std::vector<Entry> entries;
    const rapidjson::Document document = parsedArray(json);
    for (const Value &object : document.GetArray())
        entries.push_back(readEntry(object));
    return entries;
}

std::vector<ExampleSentence> readSentences(std::string_view json)
{
    std::vector<ExampleSentence> sentences;
    const rapidjson::Document document = parsedArray(json);
    for (const Value &object : document.GetArray())
        sentences.push_back(readSentence(object));
    return sentences;
}

std::unique_ptr<const Lexicon> embeddedLexicon()
{
    std::vector<Entry> entries;
    for (const std::string_view file : embeddedWordFiles()) {
        std::vector<Entry> some = readEntries(file);
        std::ranges::move(some, std::back_inserter(entries));
    }
    return std::make_unique<const Lexicon>(std::move(entries), readSentences(embeddedSentences()));
}

} // namespace nimbrelle::practice
