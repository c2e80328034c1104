#include "practice/Explain.h"

#include "practice/Sentences.h"

#include <algorithm>

namespace nimbrelle::practice {

JsonObject describe(const Value &entry, const Value &sense)
{
    JsonObject answer;
    answer.copy(entry, {"headword", "phonetic", "definition_en", "register", "family_root", "affixes"});
    answer.copy(sense, {"pos", "meaning_zh", "inflections"});
    const bool isNeutral = textAt(entry, "register") == "neutral";
    return std::move(answer.set("register_note_zh", isNeutral ? "" : textAt(entry, "note_zh")));
}

JsonObject describeUnknown(std::string_view text)
{
    std::string word = collapsed(trimmed(text, " \t\r\n.,;:!?\"'()[]{}<>*_~`|"));
    if (word.empty())
        word = collapsed(text);
    JsonObject answer;
    answer.set("headword", word).set("family_root", word).set("surface_form", word).set("form_kind", "base");
    answer.set("meaning_zh", "练习词条：没有收录").set("register", "neutral").set("grammar", "none");
    answer.set("sentence", "I came across \"" + word + "\" in a thread today.");
    answer.set("sentence_zh", "我今天在一个帖子里碰到了“" + word + "”。");
    return std::move(answer.set("sentence_is_example", Value(true)));
}

JsonObject &addExample(JsonObject &answer, const Value &sentence)
{
    answer.set("sentence", textAt(sentence, "en")).set("sentence_zh", textAt(sentence, "zh"));
    return answer.set("sentence_is_example", Value(true));
}

namespace {

void addSentence(JsonObject &answer, const Place &place)
{
    answer.set("sentence", place.sentence).set("sentence_is_example", Value(false));
    answer.set("sentence_zh", place.known ? textAt(*place.known, "zh") : "（练习模式没有这句的译文）");
}

/// What was marked, and how its form reads. Of "has been running" that is the form at its end.
struct Marked {
    std::vector<Word> words;
    std::string form;
    std::span<const Reading> readings;
};

Marked readMarked(const Lexicon &lexicon, std::string_view selection)
{
    Marked marked{.words = wordsOf(selection), .form = keyOf(selection), .readings = {}};
    marked.readings = lexicon.readingsOf(marked.form);
    const std::vector<Match> known = lexicon.wordsIn(marked.words);
    if (marked.readings.empty() && !known.empty() && known.back().end == marked.words.size()) {
        marked.form = keyOf(std::span(marked.words).subspan(known.back().begin));
        marked.readings = lexicon.readingsOf(marked.form);
    }
    return marked;
}

/// The rule that a form shows, and the words that show it.
struct Usage {
    const Value *rule = nullptr;
    std::string words;
};

/// The lexicon says it of its own sentences; elsewhere only what a form shows in any sentence is told.
Usage usageOf(const Lexicon &lexicon, const Marked &marked, const Place &place)
{
    if (place.known) {
        for (const auto &[words, rule] : membersAt(*place.known, "grammar")) {
            if (keyHolds(keyOf(textOf(words)), marked.form))
                return {.rule = lexicon.grammar(textOf(rule)), .words = std::string(textOf(words))};
        }
        return {};
    }
    const std::string_view form = marked.readings.front().form;
    const auto isSame = [form](const Reading &reading) { return reading.form == form; };
    if (!std::ranges::all_of(marked.readings, isSame))
        return {};
    return {.rule = lexicon.grammar(form), .words = place.surface};
}

const Reading &fitting(std::span<const Reading> readings, const Value *rule)
{
    const auto fits = [rule](const Reading &reading) {
        const std::string_view pos = rule ? textAt(*rule, "pos") : "";
        return rule && reading.form == textAt(*rule, "form")
            && (pos.empty() || pos == textAt(*reading.sense, "pos"));
    };
    const auto found = std::ranges::find_if(readings, fits);
    return found == readings.end() ? readings.front() : *found;
}

JsonObject explainAt(const Lexicon &lexicon, const Marked &marked, const Place &place)
{
    const auto [rule, words] = usageOf(lexicon, marked, place);
    const Reading &reading = fitting(marked.readings, rule);
    JsonObject answer = describe(*reading.entry, *reading.sense);
    addSentence(answer, place);
    answer.set("surface_form", place.surface).set("form_kind", reading.form);
    const std::string_view point = rule ? textAt(*rule, "point") : "";
    answer.set("grammar", point.empty() ? "none" : point);
    answer.set("grammar_note_zh", point.empty() ? "" : words + "：" + std::string(textAt(*rule, "note_zh")));
    return answer;
}

/// In an example of the word's own, one with the marked form if there is any.
JsonObject explainByExample(const Lexicon &lexicon, const Marked &marked)
{
    const Value &entry = *marked.readings.front().entry;
    const auto examples = listAt(entry, "examples");
    const auto holds = [&marked](const Value &example) {
        return keyHolds(keyOf(textAt(example, "en")), marked.form);
    };
    const auto found = std::ranges::find_if(examples, holds);
    const Value &example = found == examples.end() ? examples.front() : *found;
    const std::string_view text = textAt(example, "en");
    const std::vector<Word> words = wordsOf(text);
    const std::vector<Match> known = lexicon.wordsIn(words);
    const auto own = std::ranges::find(known, &entry, &Match::of);
    JsonObject answer =
        own == known.end() ? describe(entry, entry) : explain(lexicon, own->in(text, words), text);
    return std::move(addExample(answer, example));
}

} // namespace

JsonObject explain(const Lexicon &lexicon, std::string_view selection, std::string_view context)
{
    const Marked marked = readMarked(lexicon, selection);
    const auto place = placeIn(lexicon, context, marked.words);
    if (!marked.readings.empty())
        return place ? explainAt(lexicon, marked, *place) : explainByExample(lexicon, marked);
    JsonObject answer = describeUnknown(selection);
    if (place)
        addSentence(answer, *place);
    return answer;
}

} // namespace nimbrelle::practice
