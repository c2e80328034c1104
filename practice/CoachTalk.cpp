#include "practice/CoachTalk.h"

#include "practice/Mnemonic.h"

#include <algorithm>
#include <charconv>

namespace nimbrelle::practice {

static constexpr size_t dayLength = std::string_view("2000-01-01 ").size();

/// The text inside the first pair of full-width brackets, pairs inside it included; `rest` is what follows.
static std::string_view insideBrackets(std::string_view text, std::string_view &rest)
{
    constexpr std::string_view open = "（";
    constexpr std::string_view close = "）";
    const size_t begin = text.find(open);
    if (begin == std::string_view::npos)
        return {};
    size_t depth = 0;
    for (size_t at = begin; at < text.size(); ++at) {
        depth += text.substr(at).starts_with(open) ? 1 : 0;
        if (text.substr(at).starts_with(close) && --depth == 0) {
            rest = text.substr(at + close.size());
            return text.substr(begin + open.size(), at - begin - open.size());
        }
    }
    return {};
}

/// The record puts the label of an unusual register behind the meaning.
static std::string_view withoutRegister(std::string_view meaning)
{
    for (const std::string_view label : {"，正式", "，口语", "，俚语", "，技术"}) {
        if (meaning.ends_with(label))
            meaning.remove_suffix(label.size());
    }
    return meaning;
}

static std::optional<SavedWord> readSaved(std::string_view line)
{
    if (line.size() <= dayLength)
        return std::nullopt;
    line.remove_prefix(dayLength);
    std::string_view rest;
    const std::string_view inside = insideBrackets(line, rest);
    if (inside.empty())
        return std::nullopt;
    const size_t blank = inside.find(' ');
    SavedWord saved{std::string(line.substr(0, line.find("（"))),
        std::string(withoutRegister(inside.substr(blank == std::string_view::npos ? 0 : blank + 1))), {}};
    constexpr std::string_view from = " 来自 ";
    if (rest.starts_with(from))
        saved.place = rest.substr(from.size(),
            rest.find("：") == std::string_view::npos ? rest.npos : rest.find("：") - from.size());
    return saved;
}

static std::optional<ForgottenWord> readForgotten(std::string_view line)
{
    const size_t colon = line.find("：");
    if (colon == std::string_view::npos)
        return std::nullopt;
    constexpr std::string_view meaningMark = "。意思：";
    ForgottenWord word{std::string(line.substr(0, colon)), {}, split(line, "没想起来").size() - 1};
    const size_t meaning = line.find(meaningMark);
    if (meaning != std::string_view::npos) {
        const std::string_view rest = line.substr(meaning + meaningMark.size());
        word.meaningZh = rest.substr(0, rest.find("。"));
    }
    return word;
}

static std::optional<size_t> numberAfter(std::string_view text, std::string_view mark)
{
    const size_t found = text.find(mark);
    if (found == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(found + mark.size());
    size_t number = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

CoachRecord readCoachRecord(std::string_view text)
{
    constexpr std::string_view rememberedMark = "最近两次都想起来了的词：";
    CoachRecord record;
    record.nextQuestions = numberAfter(text, "这一轮有 ");
    std::string_view heading;
    for (const std::string_view line : split(text, "\n")) {
        if (!line.starts_with("- ")) {
            heading = line;
            if (line.starts_with(rememberedMark)) {
                for (const std::string_view word : split(line.substr(rememberedMark.size()), ", "))
                    record.remembered.emplace_back(word);
            }
        } else if (heading.starts_with("最近 7 天新存的词")) {
            if (auto saved = readSaved(line.substr(2)))
                record.saved.push_back(std::move(*saved));
        } else if (heading.starts_with("最近两周忘过两次以上的词")) {
            if (auto forgotten = readForgotten(line.substr(2)))
                record.forgotten.push_back(std::move(*forgotten));
        }
    }
    return record;
}

static std::string withMeaning(const std::string &word, const std::string &meaning)
{
    return "**" + word + "**" + (meaning.empty() ? "" : "（" + meaning + "）");
}

static std::string inlineTip(const Lexicon &lexicon, const std::string &word)
{
    std::string tip = tipFor(lexicon, {word, {}, {}, {}, {}});
    for (size_t at; (at = tip.find('\n')) != std::string::npos;)
        tip.replace(at, 1, "；");
    constexpr std::string_view stop = "。";
    return tip.ends_with(stop) ? tip.substr(0, tip.size() - stop.size()) : tip;
}

static std::string listOfSaved(const CoachRecord &record, size_t most)
{
    std::vector<std::string> words;
    for (const SavedWord &saved : record.saved) {
        if (words.size() < most)
            words.push_back(withMeaning(saved.word, saved.meaningZh));
    }
    return joined(words, "、");
}

static std::string readingParagraph(const CoachRecord &record)
{
    if (record.saved.empty())
        return "这几天的记录里还没有新存的词，我还在了解你平时读什么。看到哪个词卡住了，顺手划一下就好，其余"
               "的交给我记着。";
    const SavedWord &newest = record.saved.front();
    std::string text = "我注意到你最近存下了 " + withMeaning(newest.word, newest.meaningZh);
    if (!newest.place.empty())
        text += "，是在 " + newest.place + (newest.place.ends_with("」") ? "" : " ") + "里碰到的";
    text += "。";
    if (record.saved.size() > 1)
        text += "\n\n这几天存的词，我挑几个念给你听：" + listOfSaved(record, 5)
            + "。它们都是你自己读到的，不是谁塞给你的，再碰上时会比书上的词好认。";
    return text;
}

static std::string progressParagraph(const CoachRecord &record)
{
    if (record.remembered.empty())
        return {};
    std::vector<std::string> words;
    for (const std::string &word : record.remembered) {
        if (words.size() < 3)
            words.push_back("**" + word + "**");
    }
    return "\n\n进步也看得见：" + joined(words, "、")
        + " 最近两次你都想起来了。隔着几天还能想起来，说明它们已经在脑子里住下了。";
}

static std::string stuckParagraph(const Lexicon &lexicon, const CoachRecord &record)
{
    if (record.forgotten.empty())
        return {};
    const ForgottenWord &word = record.forgotten.front();
    std::string text = "\n\n有点黏的是 " + withMeaning(word.word, word.meaningZh) + "，最近有 "
        + std::to_string(word.times) + " 次没想起来。这种词换个记法就好：" + inlineTip(lexicon, word.word)
        + "。";
    return text;
}

static std::string todayParagraph(const CoachRecord &record)
{
    std::string text = "\n\n今天想做的话，";
    if (record.nextQuestions && *record.nextQuestions > 0)
        text += "这一轮有 " + std::to_string(*record.nextQuestions) + " 题，几分钟的事；";
    else
        text += "现在没有要复习的题，读点喜欢的就行；";
    return text + "不想做也没关系。\n\n最近读到的东西里，哪一句最让你想多问一句？";
}

static std::string briefing(const Lexicon &lexicon, const CoachRecord &record)
{
    return readingParagraph(record) + progressParagraph(record) + stuckParagraph(lexicon, record)
        + todayParagraph(record);
}

/// The words most worth the learner's time: those forgotten first, then the newest.
static std::vector<std::pair<std::string, std::string>> wordsToWatch(const CoachRecord &record, size_t most)
{
    std::vector<std::pair<std::string, std::string>> words;
    const auto add = [&](const std::string &word, const std::string &meaning) {
        const auto same = [&](const auto &other) { return other.first == word; };
        if (words.size() < most && std::ranges::none_of(words, same))
            words.emplace_back(word, meaning);
    };
    for (const ForgottenWord &word : record.forgotten)
        add(word.word, word.meaningZh);
    for (const SavedWord &word : record.saved)
        add(word.word, word.meaningZh);
    return words;
}

static std::string watchList(
    const Lexicon &lexicon, const CoachRecord &record, size_t most, std::string_view lead)
{
    std::string text(lead);
    for (const auto &[word, meaning] : wordsToWatch(record, most))
        text += "\n- " + withMeaning(word, meaning) + "：" + inlineTip(lexicon, word);
    return text;
}

static std::string weakest(const Lexicon &lexicon, const CoachRecord &record)
{
    std::string text = "从记录里看，反复没想起来的是这些，换个记法试试：";
    for (const ForgottenWord &word : record.forgotten)
        text += "\n- " + withMeaning(word.word, word.meaningZh) + "：" + inlineTip(lexicon, word.word);
    return text;
}

static std::string afterReview(const Lexicon &lexicon, const CoachRecord &record, std::string_view question)
{
    std::string text = "刚才这一轮我看到了：";
    for (const std::string_view line : split(question, "\n")) {
        const size_t colon = line.find("：");
        if (colon != std::string_view::npos && !containsHan(line.substr(0, colon)))
            text.append("\n- **").append(line.substr(0, colon)).append("**：").append(line.substr(colon + 3));
    }
    return text + stuckParagraph(lexicon, record);
}

static std::string aboutWords(const Lexicon &lexicon, std::string_view question)
{
    std::string text;
    for (const FormMatch &match : lexicon.matchesIn(wordsOf(question))) {
        const Entry &entry = *match.entry;
        text += "\n- " + withMeaning(entry.headword, entry.usualSense().meaningZh) + "：" + entry.noteZh;
    }
    return text.empty() ? text : "你说到的词，我认得这些：" + text;
}

static std::string reply(const Lexicon &lexicon, const CoachRecord &record, std::string_view question)
{
    const auto asks = [&](std::string_view words) { return question.find(words) != std::string_view::npos; };
    const bool haveWords = !wordsToWatch(record, 1).empty();
    if (asks("我刚复习完"))
        return afterReview(lexicon, record, question);
    if (asks("挑 3 个") && haveWords)
        return watchList(lexicon, record, 3, "时间不多，就看这几个：");
    if (asks("最弱") && !record.forgotten.empty())
        return weakest(lexicon, record);
    if (asks("最弱"))
        return "最近两周的记录里，没有哪个词反复想不起来，说不上哪里弱。";
    if (asks("分钟") && haveWords)
        return watchList(lexicon, record, 2, "时间短也够，只看这两个，其余的先放着：");
    if ((asks("记法") || asks("办法")) && haveWords)
        return watchList(lexicon, record, 1, "就拿它来说：");
    const std::string known = aboutWords(lexicon, question);
    if (!known.empty())
        return known;
    if (!haveWords)
        return "你的记录里还没有新词，我们才刚认识。先去读点你喜欢的，划下一个词，我们就有得聊了。";
    return watchList(lexicon, record, 2, "这句话我接不好，不过记录里有两个词可以聊：");
}

static std::string recordText(const ChatRequest &request)
{
    const auto isRecord = [](const ChatMessage &message) {
        return message.role == "user"
            && (message.content.starts_with("这是学习记录：")
                || message.content.starts_with("这是我现在的学习记录："));
    };
    const auto found = std::ranges::find_if(request.messages, isRecord);
    return found == request.messages.end() ? std::string() : found->content;
}

std::string coachTalk(const Lexicon &lexicon, const ChatRequest &request)
{
    const std::string text = recordText(request);
    const CoachRecord record = readCoachRecord(text);
    const bool wantsBriefing = request.question() == text;
    return wantsBriefing ? briefing(lexicon, record) : reply(lexicon, record, request.question());
}

} // namespace nimbrelle::practice
