#include "notebook/Explanation.h"

#include "frame/RecordCodec.h"
#include "frame/Text.h"

namespace nimbrelle {

QList<std::pair<FormKind, QString>> Explanation::allForms() const
{
    QMap<FormKind, QString> found;
    const auto given = inflections.value_or(QMap<QString, QString>());
    for (auto it = given.cbegin(); it != given.cend(); ++it) {
        const auto kind = looseFormKind(it.key());
        const QString form = trimmedBlanks(it.value());
        if (kind && !form.isEmpty() && !found.contains(*kind))
            found.insert(*kind, form);
    }
    QList<std::pair<FormKind, QString>> forms;
    for (auto it = found.cbegin(); it != found.cend(); ++it)
        forms.append({it.key(), it.value()});
    return forms;
}

QList<Affix> Explanation::affixList() const
{
    QList<Affix> list;
    for (const QString &text : affixes.value_or(QStringList())) {
        if (const auto affix = caseFrom<Affix>(trimmedOf(text, u"- ").toLower()))
            list.append(*affix);
    }
    return list;
}

} // namespace nimbrelle
