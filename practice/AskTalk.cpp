#include "practice/AskTalk.h"

#include "practice/Explain.h"

#include <algorithm>

namespace nimbrelle::practice {

static constexpr size_t mostWords = 4;
static constexpr size_t wantedExamples = 3;

static std::string between(std::string_view text, std::string_view begin, std::string_view end)
{
    const size_t from = text.find(begin);
    if (from == std::string_view::npos)
        return {};
    const std::string_view rest = text.substr(from + begin.size());
    return std::string(rest.substr(0, rest.find(end)));
}

AskSubject readAskSubject(const ChatRequest &request)
{
    for (const ChatMessage &message : request.messages) {
        if (message.role == "user" && message.content.starts_with("我在看这段英文：\n")) {
            const std::string_view text = message.content;
            const std::string_view head =
                text.substr(0, std::min(text.find("\n\n中文翻译："), text.rfind("\n\n下面是我的问题")));
            std::string original = between(head, "：\n", "\n\n我想重点了解的词：");
            return {std::move(original), between(text, "\n\n我想重点了解的词：", "\n\n")};
        }
    }
    return {};
}

static void addEntries(const Lexicon &lexicon, std::string_view text, std::vector<const Entry *> &entries)
{
    for (const FormMatch &match : lexicon.matchesIn(wordsOf(text))) {
        if (entries.size() < mostWords && std::ranges::find(entries, match.entry) == entries.end())
            entries.push_back(match.entry);
    }
}

/// The words that an answer about one word can speak of: those asked about, else the word in question, else
/// those of the text.
static std::vector<const Entry *> wordsInQuestion(
    const Lexicon &lexicon, std::string_view question, const AskSubject &subject)
{
    std::vector<const Entry *> entries;
    addEntries(lexicon, question, entries);
    if (entries.empty())
        addEntries(lexicon, subject.focusWord, entries);
    if (entries.empty() && subject.focusWord.empty())
        addEntries(lexicon, subject.original, entries);
    return entries;
}

static std::vector<const Entry *> wordsOfText(const Lexicon &lexicon, const AskSubject &subject)
{
    std::vector<const Entry *> entries;
    addEntries(lexicon, subject.focusWord, entries);
    addEntries(lexicon, subject.original, entries);
    return entries;
}

static std::string_view toneOf(const Entry &entry)
{
    if (entry.reg == "formal")
        return "偏正式，写文章、发公告时合适";
    if (entry.reg == "casual")
        return "口语，朋友之间和论坛里常用，正式文章里少用";
    if (entry.reg == "slang")
        return "网络俚语，熟人和论坛里用，正式场合别用";
    return entry.reg == "technical" ? "技术圈的说法，文档和讨论里都正常" : "中性，什么场合都能用";
}

static std::string title(const Entry &entry)
{
    return "**" + entry.headword + "**：" + entry.usualSense().meaningZh;
}

/// What the word's form shows in the text, or nothing.
static std::string grammarLine(const Lexicon &lexicon, const Entry &entry, std::string_view text)
{
    const std::vector<Word> words = wordsOf(text);
    const auto match = lexicon.firstMatchOf(entry, words);
    if (!match)
        return {};
    const std::string_view surface =
        textOf(text, std::span(words).subspan(match->begin, match->end - match->begin));
    const WordAnswer met = explain(lexicon, {std::string(surface), std::string(text)});
    return met.grammarNoteZh.empty() || met.sentenceIsExample ? std::string()
                                                              : "\n- 语法：" + met.grammarNoteZh;
}

static std::string whyText(const Lexicon &lexicon, const Entry &entry, const AskSubject &subject)
{
    std::string text =
        title(entry) + "。\n- 用法：" + entry.noteZh + "\n- 语气：" + std::string(toneOf(entry));
    text += grammarLine(lexicon, entry, subject.original);
    for (const Alternative &other : entry.alternatives)
        text += "\n- 换成 **" + other.text + "**：" + other.meaningZh;
    return text;
}

static std::string listOf(std::span<const Entry *const> entries)
{
    std::string text;
    for (const Entry *entry : entries)
        text += "\n- " + title(*entry) + "，" + entry->noteZh;
    return text;
}

static std::string plainWords(std::span<const Entry *const> entries)
{
    std::string text = "整句改写我做不到，不过可以把认得的词换成大白话：";
    for (const Entry *entry : entries)
        text += "\n- **" + entry->headword + "** → " + entry->definitionEn + "（"
            + entry->usualSense().meaningZh + "）";
    return text;
}

static void addExamples(const Entry &entry, std::vector<ExampleSentence> &examples)
{
    for (const ExampleSentence &example : entry.examples) {
        if (examples.size() < wantedExamples)
            examples.push_back(example);
    }
}

static std::string exampleText(const Lexicon &lexicon, const Entry &entry)
{
    std::vector<ExampleSentence> examples;
    addExamples(entry, examples);
    const size_t own = examples.size();
    for (const Entry &relative : lexicon.entries()) {
        if (&relative != &entry && relative.familyRoot == entry.familyRoot)
            addExamples(relative, examples);
    }
    std::string text = title(entry) + "。词库里给它写的例句有 " + std::to_string(own) + " 个";
    text += examples.size() > own ? "，再加上同一家族的：" : "：";
    for (const ExampleSentence &example : examples)
        text += "\n- " + example.en + "\n  " + example.zh;
    return text;
}

static bool asks(std::string_view question, std::initializer_list<std::string_view> words)
{
    return std::ranges::any_of(
        words, [&](auto word) { return question.find(word) != std::string_view::npos; });
}

static std::string nothingKnown(const AskSubject &subject)
{
    const std::string what = subject.focusWord.empty() ? "这里" : "“" + subject.focusWord + "”";
    return "**先说结论**：这个问题我答不了，" + what
        + "没有词库认得的词。\n- 词库里只有两百多个论坛和技术英语的词\n- 可以换一句里有 "
          "reluctant、deprecated、give up 这类词的试试";
}

static std::string freeAnswer(const Lexicon &lexicon, std::string_view question, const AskSubject &subject)
{
    const std::vector<const Entry *> entries = wordsInQuestion(lexicon, question, subject);
    if (entries.empty())
        return nothingKnown(subject);
    if (lexicon.matchesIn(wordsOf(question)).empty())
        return "这个问题我答不上来，只能讲讲认得的词。\n" + whyText(lexicon, *entries.front(), subject);
    return entries.size() == 1 ? whyText(lexicon, *entries.front(), subject)
                               : "问题里认得的词有这些：" + listOf(entries);
}

std::string askTalk(const Lexicon &lexicon, const ChatRequest &request)
{
    const AskSubject subject = readAskSubject(request);
    const std::string_view question = request.question();
    const std::vector<const Entry *> asked = wordsInQuestion(lexicon, question, subject);
    const std::vector<const Entry *> inText = wordsOfText(lexicon, subject);
    if (!inText.empty() && asks(question, {"拆开", "结构", "主干"}))
        return "整句的主干我分析不了，能讲的是里面认得的词：" + listOf(inText);
    if (!inText.empty() && asks(question, {"更简单", "简单说法"}))
        return plainWords(inText);
    if (!asked.empty() && asks(question, {"例句", "例子"}))
        return exampleText(lexicon, *asked.front());
    if (!asked.empty() && asks(question, {"为什么", "什么意思", "语气"}))
        return whyText(lexicon, *asked.front(), subject);
    return freeAnswer(lexicon, question, subject);
}

} // namespace nimbrelle::practice
