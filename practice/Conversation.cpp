#include "practice/Conversation.h"

#include "practice/Explain.h"
#include "practice/Mnemonic.h"
#include "practice/Talk.h"

#include <algorithm>
#include <unicode/regex.h>

namespace nimbrelle::practice {

namespace {

/// The first known words of a text, each once, with the grammar that they show in `context`.
std::vector<JsonObject> knownWords(const Lexicon &lexicon, std::string_view text, std::string_view context)
{
    constexpr size_t most = 4;
    std::vector<JsonObject> subjects;
    std::set<const Value *> seen;
    const std::vector<Word> words = wordsOf(text);
    for (const Match &match : lexicon.wordsIn(words)) {
        if (subjects.size() == most || !seen.insert(match.of).second)
            continue;
        const JsonObject met = explain(lexicon, match.in(text, words), context);
        subjects.emplace_back(*match.of);
        if (!isTrueAt(met.value(), "sentence_is_example"))
            subjects.back().copy(met.value(), {"grammar_note_zh"});
    }
    return subjects;
}

std::string_view lastKnownWord(const Lexicon &lexicon, std::string_view text)
{
    const std::vector<Word> words = wordsOf(text);
    const std::vector<Match> known = lexicon.wordsIn(words);
    return known.empty() ? std::string_view() : known.back().in(text, words);
}

/// A talk about a text opens with a message that has the text and, at its end, the word in question.
Subjects subjectsOfText(const Lexicon &lexicon, const ChatRequest &request)
{
    const std::string_view question = request.question();
    const std::string_view context = request.isFirstQuestion() ? std::string_view() : request.opening();
    const std::string text = std::string(lastKnownWord(lexicon, context)) + '\n' + std::string(context);
    Subjects subjects;
    subjects["named"] = knownWords(lexicon, question, context);
    subjects["text"] = knownWords(lexicon, text, context);
    const bool namesAny = !subjects["named"].empty();
    subjects["asked"] = knownWords(lexicon, namesAny ? question : text, context);
    return subjects;
}

icu::UnicodeString unicode(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

/// What a pattern of the talk file finds in a text: its groups, and what is known of the word in the first.
std::vector<JsonObject> caught(const Lexicon &lexicon, std::string_view pattern, std::string_view text)
{
    std::vector<JsonObject> subjects;
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString searched = unicode(text);
    icu::RegexMatcher matcher(unicode(pattern), searched, UREGEX_MULTILINE, status);
    while (U_SUCCESS(status) && matcher.find()) {
        std::string word, detail;
        matcher.group(1, status).toUTF8String(word);
        if (matcher.groupCount() > 1)
            matcher.group(2, status).toUTF8String(detail);
        const Value *entry = lexicon.entryOf(word);
        JsonObject &subject = entry ? subjects.emplace_back(*entry) : subjects.emplace_back();
        subject.set("1", word).set("2", detail).set("tip", tipOnOneLine(lexicon, word));
    }
    return subjects;
}

/// The words most worth the learner's time: those forgotten first, then the newest.
std::vector<JsonObject> watchedWords(const Lexicon &lexicon, std::string_view record)
{
    const auto patterns = memberAt(lexicon.talk(), "record");
    std::vector<JsonObject> watched = caught(lexicon, textAt(*patterns, "forgotten"), record);
    for (JsonObject &saved : caught(lexicon, textAt(*patterns, "saved"), record)) {
        const auto same = [&saved](const JsonObject &word) {
            return textAt(word.value(), "1") == textAt(saved.value(), "1");
        };
        if (std::ranges::none_of(watched, same))
            watched.push_back(std::move(saved));
    }
    return watched;
}

Subjects subjectsOfRecord(const Lexicon &lexicon, const ChatRequest &request)
{
    Subjects subjects;
    for (const auto &[kind, pattern] : membersAt(lexicon.talk(), "record"))
        subjects[kind.GetString()] = caught(lexicon, textOf(pattern), request.opening());
    for (const auto &[kind, pattern] : membersAt(lexicon.talk(), "question"))
        subjects[kind.GetString()] = caught(lexicon, textOf(pattern), request.question());
    subjects["watched"] = watchedWords(lexicon, request.opening());
    subjects["named"] = knownWords(lexicon, request.question(), {});
    return subjects;
}

} // namespace

std::string converse(const Lexicon &lexicon, const ChatRequest &request)
{
    constexpr std::string_view role = "教练"; // the coach's system text tells it what it is
    const bool isCoach = request.systemText().find(role) != std::string_view::npos;
    const Subjects subjects = isCoach ? subjectsOfRecord(lexicon, request) : subjectsOfText(lexicon, request);
    const std::string_view coachs = request.isFirstQuestion() ? "briefing" : "coach";
    return Talk(lexicon.talk(), subjects).answer(isCoach ? coachs : "ask", request.question());
}

} // namespace nimbrelle::practice
