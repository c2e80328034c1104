#include "card/CardText.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QString progressText(const std::optional<Progress> &progress)
{
    return progress ? u" %1/%2"_s.arg(progress->met).arg(progress->all) : QString();
}

bool differs(const QString &text, const QString &other)
{
    return text.compare(other, Qt::CaseInsensitive) != 0;
}

} // namespace

std::optional<QString> formLine(const Explanation &explanation)
{
    const QString form = explanation.surfaceForm.value_or(QString());
    const auto kind = looseFormKind(explanation.formKind);
    if (form.isEmpty() || !kind || *kind == FormKind::base || !differs(form, explanation.headword))
        return std::nullopt;
    return form + u" = "_s + explanation.headword + u" 的"_s + label(*kind);
}

std::optional<QString> familyRootOf(const Explanation &explanation)
{
    const QString root = explanation.familyRoot.value_or(QString());
    if (root.isEmpty() || !differs(root, explanation.headword))
        return std::nullopt;
    return root;
}

QList<UnlockItem> unlockItems(const Unlock &unlock)
{
    using Kind = UnlockItem::Kind;
    QList<UnlockItem> items;
    if (unlock.newForm)
        items.append({.kind = Kind::form,
            .text = u"新形式 "_s + unlock.newForm->form + u"（"_s + label(unlock.newForm->kind) + u"）"_s
                + progressText(unlock.formProgress)});
    if (unlock.newGrammar)
        items.append({.kind = Kind::grammar,
            .text = u"新语法 "_s + label(*unlock.newGrammar) + progressText(unlock.grammarProgress)});
    if (!unlock.newAffixes.isEmpty())
        items.append({.kind = Kind::affixes,
            .text = u"新词缀 "_s + displayForms(unlock.newAffixes).join(u'、')
                + progressText(unlock.affixProgress)});
    if (unlock.awakenedAfterDays)
        items.append({.kind = Kind::awakened,
            .text = u"好久不见！上次见它是 %1 天前"_s.arg(*unlock.awakenedAfterDays)});
    if (!unlock.familyMembers.isEmpty())
        items.append(
            {.kind = Kind::family, .text = u"和 "_s + unlock.familyMembers.join(u"、"_s) + u" 是一家"_s});
    return items;
}

} // namespace nimbrelle
