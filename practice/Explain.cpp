#include "practice/Explain.h"

#include "practice/Grammar.h"
#include "practice/Sentences.h"

#include <algorithm>
#include <set>

namespace nimbrelle::practice {

static constexpr std::string_view selectionMark = "Selection: ";
static constexpr std::string_view contextMark = "\nSurrounding text: ";

std::optional<ExplainQuestion> readExplainQuestion(std::string_view message)
{
    if (!message.starts_with(selectionMark))
        return std::nullopt;
    message.remove_prefix(selectionMark.size());
    const size_t mark = message.find(contextMark);
    if (mark == std::string_view::npos)
        return ExplainQuestion{std::string(message), {}};
    const std::string_view context = message.substr(mark + contextMark.size());
    return ExplainQuestion{
        std::string(message.substr(0, mark)), context == "(none)" ? "" : std::string(context)};
}

WordAnswer describe(const Entry &entry, const Sense &sense)
{
    WordAnswer answer;
    answer.headword = entry.headword;
    answer.phonetic = entry.phonetic;
    answer.pos = sense.pos;
    answer.meaningZh = sense.meaningZh;
    answer.definitionEn = entry.definitionEn;
    answer.reg = entry.reg;
    answer.registerNoteZh = entry.reg == "neutral" ? "" : entry.noteZh;
    answer.inflections = sense.forms;
    answer.familyRoot = entry.familyRoot;
    answer.affixes = entry.affixes;
    return answer;
}

WordAnswer describeUnknown(std::string_view text)
{
    WordAnswer answer;
    answer.headword = collapsed(withoutEdgePunctuation(text));
    if (answer.headword.empty())
        answer.headword = collapsed(text);
    answer.meaningZh = "练习词条：没有收录";
    answer.familyRoot = answer.headword;
    answer.surfaceForm = answer.headword;
    answer.sentence = "I came across \"" + answer.headword + "\" in a thread today.";
    answer.sentenceZh = "我今天在一个帖子里碰到了“" + answer.headword + "”。";
    return answer;
}

/// A selection such as "has been running" leads with helpers; they belong to the surface, not to the word.
static bool isHelper(const std::string &word)
{
    static const std::set<std::string> helpers = {"have", "has", "had", "be", "been", "being", "is", "are",
        "was", "were", "am", "will", "would", "can", "could", "should", "must", "might", "may", "do", "does",
        "did", "not", "never", "i", "you", "he", "she", "it", "we", "they", "to", "the", "a", "an"};
    return helpers.contains(word) || word.find('\'') != std::string::npos;
}

struct Selection {
    std::string text; ///< as marked, without the noise at its ends
    size_t helpers = 0; ///< words in front of the word itself
    std::span<const FormHit> hits;
};

static constexpr size_t mostHelpers = 5;

static Selection readSelection(const Lexicon &lexicon, std::string_view marked)
{
    Selection selection{collapsed(withoutEdgePunctuation(marked)), 0, {}};
    const std::vector<Word> words = wordsOf(selection.text);
    for (size_t skipped = 0; skipped < std::min(words.size(), mostHelpers); ++skipped) {
        selection.helpers = skipped;
        selection.hits = lexicon.readingsOf(selection.text.substr(words[skipped].begin));
        if (!selection.hits.empty() || !isHelper(words[skipped].folded))
            break;
    }
    return selection;
}

static void put(WordAnswer &answer, const GrammarReading &reading, std::string surface)
{
    answer.surfaceForm = std::move(surface);
    answer.formKind = reading.hit.kind;
    answer.grammar = reading.grammar;
    answer.grammarNoteZh = reading.noteZh;
}

static std::string translationOr(const Lexicon &lexicon, const std::string &sentence)
{
    return lexicon.translationOf(sentence).value_or(std::string(noTranslationZh));
}

static WordAnswer explainIn(const Lexicon &lexicon, const Selection &selection, const FoundSentence &found)
{
    const std::vector<Word> words = wordsOf(found.text);
    const size_t end = found.wordBegin + wordsOf(selection.text).size();
    const Place place{found.text, words, found.wordBegin + selection.helpers, end};
    const GrammarReading reading = readGrammar(selection.hits, place);
    WordAnswer answer = describe(*reading.hit.entry, *reading.hit.sense);
    put(answer, reading,
        std::string(textOf(found.text, std::span(words).subspan(found.wordBegin, end - found.wordBegin))));
    answer.sentence = found.text;
    answer.sentenceIsExample = false;
    answer.sentenceZh = translationOr(lexicon, found.text);
    return answer;
}

static const ExampleSentence &exampleFor(const Entry &entry, std::string_view selection)
{
    const std::string key = " " + matchKey(selection) + " ";
    const auto holds = [&key](const ExampleSentence &example) {
        return (" " + matchKey(example.en) + " ").find(key) != std::string::npos;
    };
    const auto found = std::ranges::find_if(entry.examples, holds);
    return found == entry.examples.end() ? entry.examples.front() : *found;
}

static WordAnswer explainByExample(const Lexicon &lexicon, const Selection &selection)
{
    const Entry &entry = *selection.hits.front().entry;
    const ExampleSentence &example = exampleFor(entry, selection.text);
    const std::vector<Word> words = wordsOf(example.en);
    const FormMatch match = lexicon.firstMatchOf(entry, words).value_or(FormMatch{0, words.size(), &entry});
    const std::string surface(
        textOf(example.en, std::span(words).subspan(match.begin, match.end - match.begin)));
    const auto own = lexicon.readingsOf(surface);
    const GrammarReading reading =
        readGrammar(own.empty() ? selection.hits : own, {example.en, words, match.begin, match.end});
    WordAnswer answer =
        describe(entry, reading.hit.entry == &entry ? *reading.hit.sense : entry.usualSense());
    put(answer, reading, surface);
    answer.sentence = example.en;
    answer.sentenceZh = example.zh;
    return answer;
}

static WordAnswer explainUnknown(
    const Lexicon &lexicon, std::string_view marked, const std::optional<FoundSentence> &found)
{
    WordAnswer answer = describeUnknown(marked);
    if (found) {
        answer.sentence = found->text;
        answer.sentenceIsExample = false;
        answer.sentenceZh = translationOr(lexicon, found->text);
    }
    return answer;
}

WordAnswer explain(const Lexicon &lexicon, const ExplainQuestion &question)
{
    const Selection selection = readSelection(lexicon, question.selection);
    const auto found = sentenceWith(question.context, selection.text);
    if (selection.hits.empty())
        return explainUnknown(lexicon, question.selection, found);
    return found ? explainIn(lexicon, selection, *found) : explainByExample(lexicon, selection);
}

} // namespace nimbrelle::practice
