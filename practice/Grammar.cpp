#include "practice/Grammar.h"

#include <algorithm>
#include <array>

namespace nimbrelle::practice {

/// What the words before a verb say of it.
enum class Before {
    nothing,
    start,
    have,
    had,
    bePresent,
    bePast,
    be,
    perfectBe,
    pastPerfectBe,
    will,
    modal,
    to,
    helper,
    past
};

struct Lead {
    Before kind = Before::nothing;
    size_t from = 0; ///< the word where the verb group begins
};

template <size_t N> static bool isOneOf(std::string_view word, const std::array<std::string_view, N> &words)
{
    return std::ranges::find(words, word) != words.end();
}

static bool isAdverb(std::string_view word)
{
    static constexpr std::array<std::string_view, 22> adverbs = {"never", "already", "just", "not", "always",
        "really", "also", "still", "probably", "finally", "recently", "only", "ever", "actually", "even",
        "often", "now", "clearly", "simply", "eventually", "then", "rather"};
    return isOneOf(word, adverbs);
}

static bool isDeterminer(std::string_view word)
{
    static constexpr std::array<std::string_view, 27> determiners = {"a", "an", "the", "this", "that",
        "these", "those", "my", "your", "his", "her", "our", "their", "its", "no", "any", "some", "each",
        "every", "another", "one", "first", "last", "next", "new", "old", "of"};
    return isOneOf(word, determiners);
}

static bool isSingularSubject(std::string_view word)
{
    static constexpr std::array<std::string_view, 9> subjects = {
        "he", "she", "it", "who", "that", "which", "everyone", "nobody", "somebody"};
    return isOneOf(word, subjects);
}

static bool isPluralSubject(std::string_view word)
{
    static constexpr std::array<std::string_view, 6> subjects = {"i", "you", "we", "they", "people", "users"};
    return isOneOf(word, subjects);
}

static std::string withoutNot(std::string_view word)
{
    if (word == "won't")
        return "will";
    if (word == "can't" || word == "cannot")
        return "can";
    return std::string(word.ends_with("n't") ? word.substr(0, word.size() - 3) : word);
}

static Before helperOf(std::string_view word)
{
    static constexpr std::array<std::string_view, 8> modals = {
        "can", "could", "should", "would", "must", "might", "may", "shall"};
    const std::string plain = withoutNot(word);
    if (plain == "have" || plain == "has" || plain.ends_with("'ve"))
        return Before::have;
    if (plain == "had")
        return Before::had;
    if (plain == "was" || plain == "were")
        return Before::bePast;
    if (plain == "am" || plain == "is" || plain == "are" || plain.ends_with("'m") || plain.ends_with("'re")
        || plain.ends_with("'s"))
        return Before::bePresent;
    if (plain == "be" || plain == "been" || plain == "being" || plain == "get" || plain == "gets"
        || plain == "got")
        return Before::be;
    if (plain == "will" || plain.ends_with("'ll") || plain == "gonna")
        return Before::will;
    if (isOneOf(plain, modals) || plain.ends_with("'d"))
        return Before::modal;
    if (plain == "to")
        return Before::to;
    if (plain == "did")
        return Before::past;
    return plain == "do" || plain == "does" ? Before::helper : Before::nothing;
}

/// The word before `index`, adverbs passed over; `words.size()` when there is none.
static size_t wordBefore(const Place &place, size_t index)
{
    while (index > 0) {
        --index;
        if (!isAdverb(place.words[index].folded))
            return index;
    }
    return place.words.size();
}

static bool isFunctionWord(std::string_view word)
{
    static constexpr std::array<std::string_view, 20> words = {"and", "or", "but", "for", "with", "on", "in",
        "at", "from", "about", "by", "all", "many", "more", "most", "two", "three", "few", "both", "than"};
    return isDeterminer(word) || isOneOf(word, words) || helperOf(word) != Before::nothing;
}

static Lead leadOfBeen(const Place &place, size_t been)
{
    const size_t before = wordBefore(place, been);
    const Before helper = before < been ? helperOf(place.words[before].folded) : Before::nothing;
    if (helper == Before::have || helper == Before::had)
        return {helper == Before::have ? Before::perfectBe : Before::pastPerfectBe, before};
    return {Before::be, helper == Before::nothing ? been : before};
}

static Lead leadOf(const Place &place)
{
    const size_t before = wordBefore(place, place.begin);
    if (before >= place.words.size())
        return {Before::start, place.begin};
    const std::string &word = place.words[before].folded;
    if (word == "please" && before == 0)
        return {Before::start, place.begin};
    const Before kind = helperOf(word);
    if (kind == Before::be)
        return leadOfBeen(place, before);
    if (kind == Before::to && before > 0 && place.words[before - 1].folded == "going")
        return {Before::will, before - 1};
    const bool withoutSubject = before == 0 || place.words[before - 1].folded == "please";
    if (kind == Before::helper && withoutSubject)
        return {Before::start, before};
    return {kind, before};
}

static std::string quote(const Place &place, size_t from)
{
    return std::string(textOf(place.sentence, place.words.subspan(from, place.end - from)));
}

static const FormHit *hitOf(std::span<const FormHit> hits, FormKind kind)
{
    const auto found = std::ranges::find(hits, kind, &FormHit::kind);
    return found == hits.end() ? nullptr : &*found;
}

struct Rule {
    FormKind form;
    Before lead;
    std::string_view grammar;
    std::string_view noteZh; ///< follows the quoted words
};

/// The first rule that fits wins. "if" sentences are told apart afterwards.
static constexpr std::array verbRules = {
    Rule{FormKind::ing, Before::perfectBe, "present_perfect", "现在完成进行时，从过去一直持续到现在"},
    Rule{FormKind::ing, Before::pastPerfectBe, "past_perfect", "过去完成进行时，持续到过去的某个时刻"},
    Rule{FormKind::ing, Before::bePresent, "present_continuous", "am/is/are + 动词-ing，现在正在做"},
    Rule{FormKind::ing, Before::bePast, "past_continuous", "was/were + 动词-ing，过去那时正在做"},
    Rule{
        FormKind::pastParticiple, Before::have, "present_perfect", "have/has + 过去分词，过去的事影响到现在"},
    Rule{FormKind::pastParticiple, Before::had, "past_perfect", "had + 过去分词，比过去更早的事"},
    Rule{FormKind::pastParticiple, Before::bePresent, "passive", "be + 过去分词，表示“被怎么样”"},
    Rule{FormKind::pastParticiple, Before::bePast, "passive", "was/were + 过去分词，表示“被怎么样”"},
    Rule{FormKind::pastParticiple, Before::be, "passive", "be + 过去分词，表示“被怎么样”"},
    Rule{FormKind::pastParticiple, Before::perfectBe, "passive",
        "have been + 过去分词，到现在为止已经“被怎么样”"},
    Rule{FormKind::pastParticiple, Before::pastPerfectBe, "passive",
        "had been + 过去分词，那时已经“被怎么样”"},
    Rule{FormKind::base, Before::will, "future", "说将来的事，后面用动词原形"},
    Rule{FormKind::base, Before::modal, "modal", "情态动词后面用动词原形"},
    Rule{FormKind::base, Before::to, "infinitive", "to + 动词原形，表示要做的事或目的"},
    Rule{FormKind::base, Before::past, "past_simple", "did 已经表示过去，后面用动词原形"},
    Rule{FormKind::base, Before::helper, "present_simple", "do/does 后面用动词原形，说平常的情况"},
    Rule{FormKind::base, Before::start, "imperative", "动词原形开头，没有主语，直接让人做"},
    Rule{FormKind::past, Before::nothing, "past_simple", "一般过去时，说已经发生的事"},
    Rule{FormKind::past, Before::start, "past_simple", "一般过去时，说已经发生的事"},
    Rule{FormKind::ing, Before::nothing, "gerund", "动词加 -ing 当名词用，表示“做这件事”"},
    Rule{FormKind::ing, Before::to, "gerund", "这里的 to 是介词，后面用动词-ing"},
    Rule{FormKind::ing, Before::start, "gerund", "动词加 -ing 当名词用，表示“做这件事”"},
};

static std::string previousWord(const Place &place)
{
    const size_t before = wordBefore(place, place.begin);
    return before < place.words.size() ? place.words[before].folded : std::string();
}

static GrammarReading reading(
    const FormHit &hit, std::string_view grammar, std::string quoted, std::string_view note)
{
    return {hit, std::string(grammar), std::move(quoted.append("：").append(note))};
}

static bool isUnreal(const Place &place)
{
    const auto isIf = [](const Word &word) { return word.folded == "if"; };
    return std::ranges::any_of(place.words, isIf);
}

static std::optional<GrammarReading> readSubject(std::span<const FormHit> hits, const Place &place)
{
    const std::string previous = previousWord(place);
    const FormHit *third = hitOf(hits, FormKind::thirdPerson);
    const FormHit *plural = hitOf(hits, FormKind::plural);
    const bool usuallyVerb = third && third->sense == &third->entry->usualSense();
    const bool afterNoun = usuallyVerb && !previous.empty() && !isFunctionWord(previous);
    if (third && (!plural || isSingularSubject(previous) || afterNoun))
        return reading(*third, "present_simple", quote(place, place.begin), "主语是第三人称单数，动词加 -s");
    const FormHit *base = hitOf(hits, FormKind::base);
    if (base && base->sense->isVerb() && isPluralSubject(previous))
        return reading(*base, "present_simple", quote(place, place.begin), "一般现在时，说平常的情况或事实");
    return std::nullopt;
}

static std::optional<GrammarReading> readVerb(std::span<const FormHit> hits, const Place &place)
{
    const Lead lead = leadOf(place);
    const bool afterDeterminer = isDeterminer(previousWord(place));
    for (const Rule &rule : verbRules) {
        const FormHit *hit = hitOf(hits, rule.form);
        const bool fits = hit && hit->sense->isVerb() && rule.lead == lead.kind;
        if (!fits || (afterDeterminer && lead.kind == Before::nothing))
            continue;
        const size_t from = lead.kind == Before::nothing ? place.begin : std::min(lead.from, place.begin);
        if (rule.grammar == "modal" && isUnreal(place))
            return reading(*hit, "conditional", quote(place, from), "if 句里的假设，用情态动词 + 动词原形");
        return reading(*hit, rule.grammar, quote(place, from), rule.noteZh);
    }
    return std::nullopt;
}

static std::optional<GrammarReading> readDegree(std::span<const FormHit> hits, const Place &place)
{
    if (const FormHit *hit = hitOf(hits, FormKind::comparative))
        return reading(*hit, "comparative", quote(place, place.begin), "比较级，“更……”");
    if (const FormHit *hit = hitOf(hits, FormKind::superlative))
        return reading(*hit, "superlative", quote(place, place.begin), "最高级，“最……”");
    const bool gradable = hits.front().sense->pos.starts_with("ad");
    if (!gradable || place.begin == 0)
        return std::nullopt;
    const std::string &before = place.words[place.begin - 1].folded;
    if (before == "more")
        return reading(
            hits.front(), "comparative", quote(place, place.begin - 1), "长词的比较级，前面加 more");
    if (before == "most")
        return reading(
            hits.front(), "superlative", quote(place, place.begin - 1), "长词的最高级，前面加 most");
    return std::nullopt;
}

/// "a fix", "the post": a base form behind a determiner is the noun where the word has one.
static FormHit quietHit(std::span<const FormHit> hits, const Place &place)
{
    const auto isNoun = [](const FormHit &hit) {
        return hit.sense->pos == "n." && hit.kind == FormKind::base;
    };
    const auto noun = std::ranges::find_if(hits, isNoun);
    return noun != hits.end() && isDeterminer(previousWord(place)) ? *noun : hits.front();
}

GrammarReading readGrammar(std::span<const FormHit> hits, const Place &place)
{
    if (auto found = readDegree(hits, place))
        return *found;
    if (auto found = readSubject(hits, place))
        return *found;
    if (auto found = readVerb(hits, place))
        return *found;
    if (const FormHit *plural = hitOf(hits, FormKind::plural))
        return reading(*plural, "plural", quote(place, place.begin), "名词复数，表示不止一个");
    return {quietHit(hits, place), "none", {}};
}

} // namespace nimbrelle::practice
