#include "practice/Translation.h"

#include <algorithm>

namespace nimbrelle::practice {

namespace {

class Translator {
public:
    Translator(const Lexicon &lexicon, std::string_view text)
        : m_lexicon(lexicon), m_text(text), m_words(wordsOf(text)), m_known(lexicon.wordsIn(m_words))
    {
        size_t begin = 0;
        for (const Match &sentence : lexicon.sentencesIn(m_words)) {
            addGlossed(begin, sentence.begin);
            m_zh += textAt(*sentence.of, "zh");
            m_knowsAny = true;
            begin = sentence.end;
        }
        addGlossed(begin, m_words.size());
    }

    std::string text() const;
    std::vector<JsonObject> keyTerms() const;

private:
    /// The words of no known sentence, with the meaning of each known one put behind it.
    void addGlossed(size_t begin, size_t end);

    const Lexicon &m_lexicon;
    const std::string_view m_text;
    const std::vector<Word> m_words;
    const std::vector<Match> m_known;
    std::string m_zh;
    bool m_isWhole = true;
    bool m_knowsAny = false;
};

void Translator::addGlossed(size_t begin, size_t end)
{
    if (begin == end)
        return;
    m_isWhole = false;
    size_t written = m_words[begin].begin;
    m_zh += m_zh.empty() ? "" : " ";
    for (const Match &match : m_lexicon.wordsIn(std::span(m_words).subspan(begin, end - begin))) {
        const size_t behind = m_words[begin + match.end - 1].end;
        m_zh += m_text.substr(written, behind - written);
        m_zh.append("〔").append(textAt(*match.of, "meaning_zh")).append("〕");
        written = behind;
        m_knowsAny = true;
    }
    const size_t last = end < m_words.size() ? m_words[end].begin : m_text.size();
    m_zh.append(m_text.substr(written, last - written)).append(" ");
}

std::string Translator::text() const
{
    if (!m_knowsAny)
        return "（练习模式没有这段的译文，词库里也没有其中的词。填上自己的 API key，这里就是整段的翻译。）";
    return m_isWhole ? m_zh : "（练习模式，不是完整翻译，只标出认得的词）\n" + collapsed(m_zh);
}

/// The first known words that are worth learning, each once.
std::vector<JsonObject> Translator::keyTerms() const
{
    constexpr size_t most = 4;
    const auto isBasic = [](const Match &match) { return isTrueAt(*match.of, "basic"); };
    const bool onlyBasic = std::ranges::all_of(m_known, isBasic);
    std::set<const Value *> seen;
    std::vector<JsonObject> terms;
    for (const Match &match : m_known) {
        if (terms.size() == most || (isBasic(match) && !onlyBasic) || !seen.insert(match.of).second)
            continue;
        terms.emplace_back()
            .set("text", match.in(m_text, m_words))
            .set("meaning_zh", textAt(*match.of, "meaning_zh"));
    }
    return terms;
}

} // namespace

JsonObject translate(const Lexicon &lexicon, std::string_view text)
{
    const Translator translator(lexicon, text);
    JsonObject answer;
    return std::move(answer.set("translation_zh", translator.text()).set("key_terms", translator.keyTerms()));
}

} // namespace nimbrelle::practice
