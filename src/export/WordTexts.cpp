#include "export/WordTexts.h"

#include "notebook/PageSource.h"

namespace nimbrelle::WordTexts {

using namespace Qt::StringLiterals;

namespace {

QString textOf(const FormSlot &slot)
{
    return slot.form + u'（' + label(slot.kind) + u'）';
}

template <class Record> PageSource pageOf(const Record &record)
{
    return {.app = record.sourceApp, .url = record.sourceURL, .title = record.sourceTitle};
}

QString nameOf(const PageSource &page)
{
    QStringList parts;
    for (const auto &part : {page.app, page.host(), page.title})
        if (part && !part->isEmpty() && !parts.contains(*part))
            parts.append(*part);
    return parts.join(u" · "_s);
}

QString withAddress(const QString &name, const std::optional<QString> &url)
{
    const QString address = url.value_or(QString());
    return name.isEmpty() || address.isEmpty() ? name + address : name + u' ' + address;
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
    return example.isGenerated ? u"AI 例句"_s : nameOf(pageOf(example));
}

QString source(const Example &example)
{
    return withAddress(sourceName(example), example.sourceURL);
}

QString source(const AINote &note)
{
    return withAddress(nameOf(pageOf(note)), note.sourceURL);
}

} // namespace nimbrelle::WordTexts
