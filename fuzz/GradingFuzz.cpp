#include "Texts.h"
#include "review/Grading.h"
#include "review/LetterSlots.h"

#include <algorithm>

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

namespace {

void checkDistances(const QString &a, const QString &b)
{
    const qint64 distance = editDistance(a, b);
    require(distance == editDistance(b, a));
    require(distance <= std::max(characterCount(a), characterCount(b)));
    require(isAdjacentSwap(a, b) == isAdjacentSwap(b, a));
    require(!isAdjacentSwap(a, b) || distance == 1 || distance == 2);
}

void checkLetters(const QString &input, const QString &answer)
{
    std::optional<QString> given = input;
    for (qsizetype step = 0; step <= characterCount(answer); ++step) {
        given = withNextLetter(*given, answer);
        if (!given)
            return;
        require(answer.startsWith(*given) && isBetweenCharacters(answer, given->size()));
    }
    require(false);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t longest = 2000; // the distance is quadratic
    const Texts texts(data, std::min(size, longest));
    const QString input = texts.line(0), answer = texts.line(1);
    WordEntry word;
    word.headword = texts.line(2).isEmpty() ? answer : texts.line(2);
    ReviewQuestion question = ReviewQuestion::make(word);
    question.answer = answer;

    grade(input, question, 0);
    const Grade own = grade(answer, question, 0), helped = grade(answer, question, 1);
    require(own.rating == Rating::good ? helped.rating == Rating::hard : own.rating == Rating::again);
    require(grade(QString(), question, 0).rating == Rating::again);

    checkDistances(input, answer);
    checkLetters(input, answer);
    require(
        LetterSlots{answer, input}.boxes().size() == std::max(characterCount(answer), characterCount(input)));
    return 0;
}
