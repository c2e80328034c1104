#include "practice/Mnemonic.h"

#include <algorithm>
#include <array>

namespace nimbrelle::practice {

static constexpr size_t longestLine = 40;

struct AffixMeaning {
    std::string_view affix;
    std::string_view meaningZh;
};

static constexpr std::array<AffixMeaning, 30> affixMeanings = {{
    {"un-", "不"},
    {"in-", "不"},
    {"dis-", "不、去掉"},
    {"re-", "再、重新"},
    {"pre-", "预先"},
    {"mis-", "错误地"},
    {"over-", "过度"},
    {"under-", "不足"},
    {"non-", "非"},
    {"anti-", "反对"},
    {"co-", "一起"},
    {"inter-", "相互"},
    {"-tion", "变名词"},
    {"-ment", "变名词"},
    {"-ness", "变名词"},
    {"-ity", "变名词"},
    {"-er", "做这事的人或东西"},
    {"-ist", "从事这事的人"},
    {"-able", "能被……的"},
    {"-ful", "充满……的"},
    {"-less", "没有……的"},
    {"-ous", "……性质的"},
    {"-ive", "有……倾向的"},
    {"-al", "……有关的"},
    {"-ic", "……式的"},
    {"-ly", "……地"},
    {"-ize", "使……化"},
    {"-ify", "使变成"},
    {"-en", "使变得"},
    {"-ship", "关系、状态"},
}};

std::string_view meaningOfAffix(std::string_view affix)
{
    const auto found = std::ranges::find(affixMeanings, affix, &AffixMeaning::affix);
    return found == affixMeanings.end() ? std::string_view() : found->meaningZh;
}

static std::vector<std::string> listOf(std::string_view text, std::string_view separator)
{
    std::vector<std::string> parts;
    for (const std::string_view part : split(text, separator)) {
        if (!trimmed(part).empty())
            parts.emplace_back(trimmed(part));
    }
    return parts;
}

static void readLine(std::string_view line, MnemonicQuestion &question)
{
    const auto value = [&line](std::string_view label) {
        return line.starts_with(label) ? std::optional(line.substr(label.size())) : std::nullopt;
    };
    if (const auto sentence = value("他遇到它的句子："))
        question.sentence = *sentence;
    else if (const auto root = value("词根："))
        question.familyRoot = trimmed(*root);
    else if (const auto affixes = value("词缀："))
        question.affixes = listOf(*affixes, " ");
    else if (const auto words = value("他已经掌握的词："))
        question.knownWords = listOf(*words, ", ");
}

std::optional<MnemonicQuestion> readMnemonicQuestion(std::string_view message)
{
    constexpr std::string_view mark = "要记的词：";
    if (!message.starts_with(mark))
        return std::nullopt;
    MnemonicQuestion question;
    const std::vector<std::string_view> lines = split(message.substr(mark.size()), "\n");
    question.headword = trimmed(lines.front().substr(0, lines.front().find("（")));
    for (const std::string_view line : lines)
        readLine(line, question);
    return question;
}

static std::string partsOf(const MnemonicQuestion &question)
{
    std::vector<std::string> parts;
    const auto name = [](const std::string &affix) {
        return affix + "（" + std::string(meaningOfAffix(affix)) + "）";
    };
    for (const std::string &affix : question.affixes) {
        if (affix.ends_with('-') && !meaningOfAffix(affix).empty())
            parts.push_back(name(affix));
    }
    parts.push_back(question.familyRoot.empty() ? question.headword : question.familyRoot);
    for (const std::string &affix : question.affixes) {
        if (affix.starts_with('-') && !meaningOfAffix(affix).empty())
            parts.push_back(name(affix));
    }
    return parts.size() < 2 ? std::string() : "拆开：" + joined(parts, " + ");
}

static size_t sharedBeginning(std::string_view a, std::string_view b)
{
    return static_cast<size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

static std::string rootOf(const Lexicon &lexicon, const std::string &word)
{
    const Entry *entry = lexicon.entryOf(word);
    return entry ? entry->familyRoot : word;
}

/// A word of the same family that the learner has mastered, else one that begins alike, else a relative of
/// ours.
static std::string relativeLine(const Lexicon &lexicon, const MnemonicQuestion &question)
{
    constexpr size_t alike = 3;
    const std::string root =
        question.familyRoot.empty() ? rootOf(lexicon, question.headword) : question.familyRoot;
    for (const std::string &known : question.knownWords) {
        if (known != question.headword && rootOf(lexicon, known) == root)
            return "联想：和你已经认识的 " + known + " 是一家";
    }
    for (const std::string &known : question.knownWords) {
        if (known != question.headword
            && sharedBeginning(foldedAscii(known), foldedAscii(question.headword)) >= alike)
            return "联想：开头和你认识的 " + known + " 一样，放在一起记";
    }
    for (const Entry &entry : lexicon.entries()) {
        if (entry.familyRoot == root && entry.headword != question.headword)
            return "联想：和 " + entry.headword + "（" + entry.usualSense().meaningZh + "）是一家";
    }
    return {};
}

static std::string sceneLine(const Entry *entry, const MnemonicQuestion &question)
{
    const std::string scene =
        entry ? "画面：" + entry->examples.front().zh : "画面：你又在这句里撞见它：" + question.sentence;
    if ((entry || !question.sentence.empty()) && codePointCount(scene) <= longestLine)
        return scene;
    return "画面：把 " + firstCodePoints(question.headword, 16) + " 写在便利贴上，贴在屏幕边";
}

std::string tipFor(const Lexicon &lexicon, const MnemonicQuestion &question)
{
    const Entry *entry = lexicon.entryOf(question.headword);
    if (entry && !entry->tipZh.empty())
        return entry->tipZh;
    std::vector<std::string> lines = {
        relativeLine(lexicon, question), partsOf(question), sceneLine(entry, question)};
    std::erase_if(
        lines, [](const std::string &line) { return line.empty() || codePointCount(line) > longestLine; });
    return joined(lines, "\n");
}

} // namespace nimbrelle::practice
