#include "export/WordTexts.h"

#include "notebook/PageSource.h"

namespace nimbrelle::WordTexts {

using namespace Qt::StringLiterals;

namespace {

QString textOf(const FormSlot &slot)
{
    return slot.form + u'（' + label(slot.kind) + u'）';
}

} // namespace

QString forms(const WordEntry &word)
{
    QStringList texts;
    for (const FormSlot &slot : word.formSlots())
        texts.append(textOf(slot));
    return texts.join(u"，"_s);
}

QString metForms(const WordEntry &word)
{
    QStringList texts;
    for (const FormSlot &slot : word.formSlots()) {
        if (slot.record)
            texts.append(textOf(slot) + u" × "_s + QString::number(slot.record->count));
    }
    return texts.join(u"，"_s);
}

QString sourceName(const Example &example)
{
    if (example.isGenerated)
        return u"AI 例句"_s;
    const PageSource page{.app = example.sourceApp, .url = example.sourceURL, .title = example.sourceTitle};
    QStringList parts;
    for (const auto &part : {page.app, page.host(), page.title})
        if (part && !part->isEmpty() && !parts.contains(*part))
            parts.append(*part);
    return parts.join(u" · "_s);
}

QString source(const Example &example)
{
    const QString name = sourceName(example);
    const QString address = example.sourceURL.value_or(QString());
    return name.isEmpty() || address.isEmpty() ? name + address : name + u' ' + address;
}

} // namespace nimbrelle::WordTexts
