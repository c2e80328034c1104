#include "practice/Mnemonic.h"

namespace nimbrelle::practice {

namespace {

std::string_view tipFor(const Lexicon &lexicon, std::string_view word)
{
    const Value *entry = lexicon.entryOf(word);
    return entry ? textAt(*entry, "tip_zh") : "画面：把这个词写在便利贴上，贴在屏幕边";
}

} // namespace

JsonObject mnemonic(const Lexicon &lexicon, std::string_view message)
{
    const std::vector<Word> words = wordsOf(message);
    const std::string_view word = words.empty() ? "" : beforeHan(message.substr(words.front().begin));
    JsonObject answer;
    return std::move(answer.set("tip_zh", tipFor(lexicon, word)));
}

std::string tipOnOneLine(const Lexicon &lexicon, std::string_view word)
{
    constexpr std::string_view stop = "。";
    std::string tip(tipFor(lexicon, word));
    for (size_t at; (at = tip.find('\n')) != std::string::npos;)
        tip.replace(at, 1, "；");
    return tip.ends_with(stop) ? tip.substr(0, tip.size() - stop.size()) : tip;
}

} // namespace nimbrelle::practice
