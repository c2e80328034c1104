#include "Texts.h"
#include "review/ReviewQuestion.h"

#include <algorithm>

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

namespace {

// Whether the cloze is the sentence with one whole occurrence of the answer blanked.
bool isBlanked(const ReviewQuestion &question)
{
    const QString &sentence = *question.sentence, &answer = question.answer;
    const QString gap(std::max<qsizetype>(characterCount(answer), 4), u'_');
    for (qsizetype at = sentence.indexOf(answer); at >= 0; at = sentence.indexOf(answer, at + 1)) {
        const bool isWhole =
            isBetweenCharacters(sentence, at) && isBetweenCharacters(sentence, at + answer.size());
        if (isWhole && QString(sentence).replace(at, answer.size(), gap) == question.clozeSentence)
            return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    WordEntry word = Texts(data, size).word();
    word.spellLevel = 3;
    const ReviewQuestion question = ReviewQuestion::spelling(word);
    if (question.clozeSentence)
        require(!question.answer.isEmpty() && isBlanked(question));
    else
        require(question.answer == word.headword);
    require(question.formHint().has_value() == (question.answer.toLower() != word.headword.toLower()));
    return 0;
}
