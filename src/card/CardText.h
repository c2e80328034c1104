#pragma once

#include "notebook/Explanation.h"
#include "notebook/Unlock.h"

#include <QList>

/// The lines of the card that are put together from several fields. What is absent is not shown.
namespace nimbrelle {

/// "overthinking = overthink 的-ing 形式"; absent for the base form.
std::optional<QString> formLine(const Explanation &explanation);

/// The root of the word's family, where it is another word.
std::optional<QString> familyRootOf(const Explanation &explanation);

struct UnlockItem {
    enum class Kind { form, grammar, affixes, awakened, family };

    Kind kind = Kind::form;
    QString text;

    bool operator==(const UnlockItem &) const = default;
};
QList<UnlockItem> unlockItems(const Unlock &unlock);

} // namespace nimbrelle
