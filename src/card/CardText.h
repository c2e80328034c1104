#pragma once

#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "notebook/Unlock.h"

#include <QList>

/// The lines of the card that are put together from several fields. What is absent is not to be shown.
namespace nimbrelle {

/// A part of a text, in UTF-16 units.
struct TextRange {
    qsizetype from = 0;
    qsizetype length = 0;

    bool operator==(const TextRange &) const = default;
};

/// Every place where one of the terms stands in the text, letter case aside, term by term. Blanks round a
/// term don't count.
QList<TextRange> highlighted(const QString &text, const QStringList &terms);

/// "overthinking = overthink 的-ing 形式"; absent for the base form.
std::optional<QString> formLine(const Explanation &explanation);

/// The root of the word's family, where it is another word.
std::optional<QString> familyRootOf(const Explanation &explanation);

/// "来自 Firefox · example.org"; empty when nothing is known.
QString sourceLine(const PageSource &source, bool showTitle);

struct UnlockItem {
    enum class Kind { form, grammar, affixes, awakened, family };

    Kind kind = Kind::form;
    QString text;

    bool operator==(const UnlockItem &) const = default;
};
QList<UnlockItem> unlockItems(const Unlock &unlock);

} // namespace nimbrelle
