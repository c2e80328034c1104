#include "notebook/WordEntry.h"

#include "frame/AppConfig.h"
#include "frame/DayKey.h"
#include "frame/RecordCodec.h"
#include "frame/Text.h"

#include <algorithm>
#include <cmath>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

const FormRecord *recordOf(const QList<FormRecord> &records, FormKind kind)
{
    const auto found = std::find_if(
        records.cbegin(), records.cend(), [kind](const FormRecord &record) { return record.kind == kind; });
    return found == records.cend() ? nullptr : &*found;
}

} // namespace

QString idText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QString label(DisplayStage stage)
{
    switch (stage) {
    case DisplayStage::learning:
        return u"在学"_s;
    case DisplayStage::seen:
        return u"见过"_s;
    case DisplayStage::resting:
        return u"休息"_s;
    case DisplayStage::mastered:
        return u"掌握"_s;
    case DisplayStage::dormant:
        return u"沉睡"_s;
    }
    return {};
}

QStringList WordEntry::days() const
{
    if (encounterDays && !encounterDays->isEmpty())
        return *encounterDays;
    const QString created = DayKey::string(createdAt);
    const QString last = DayKey::string(lastContact());
    return created == last ? QStringList{created} : QStringList{created, last};
}

QList<FormSlot> WordEntry::formSlots() const
{
    const auto records = forms.value_or(QList<FormRecord>());
    const auto known = inflections.value_or(QMap<QString, QString>());
    QList<FormKind> kinds;
    for (const FormKind kind : allCases<FormKind>()) {
        if (known.contains(caseText(kind)))
            kinds.append(kind);
    }
    for (const FormRecord &record : records) {
        if (!kinds.contains(record.kind))
            kinds.append(record.kind);
    }

    QList<FormSlot> result;
    for (const FormKind kind : kinds) {
        const FormRecord *record = recordOf(records, kind);
        if (record)
            result.append({.kind = kind, .form = record->form, .record = *record});
        else
            result.append({.kind = kind, .form = known.value(caseText(kind))});
    }
    return result;
}

QStringList WordEntry::formTexts() const
{
    QStringList texts{headword};
    for (const FormSlot &slot : formSlots())
        texts.append(slot.form);
    texts.removeAll(QString());
    texts.removeDuplicates();
    return texts;
}

DisplayStage WordEntry::displayStage(const AppConfig &config, Timestamp now) const
{
    switch (stage.value_or(Stage::seen)) {
    case Stage::learning:
        return DisplayStage::learning;
    case Stage::resting:
        return DisplayStage::resting;
    case Stage::mastered:
        return DisplayStage::mastered;
    case Stage::seen:
        break;
    }
    const bool isLongAgo = daysBetween(lastContact(), now) > static_cast<double>(config.dormantDays);
    return isLongAgo && !isWanted() ? DisplayStage::dormant : DisplayStage::seen;
}

double WordEntry::priority(const AppConfig &config, Timestamp now) const
{
    return priorityOf(*this, config, now, [](const QString &day) { return DayKey::date(day); });
}

double priorityOf(
    const WordEntry &entry, const AppConfig &config, Timestamp now, const MidnightOf &midnightOf)
{
    constexpr double halfLifeDays = 14;
    const qsizetype noteCount = entry.notes ? entry.notes->size() : 0;
    const qsizetype sourceCount = entry.sourceKeys ? entry.sourceKeys->size() : 1;

    double sum = entry.isWanted() ? 1000 : 0;
    sum += 8 * static_cast<double>(std::min<qsizetype>(noteCount, 3));
    for (const QString &day : entry.days()) {
        const double age = std::max(0.0, daysBetween(midnightOf(day).value_or(now), now));
        sum += 10 * std::exp2(-age / halfLifeDays);
    }
    sum += 4 * static_cast<double>(std::min<qsizetype>(sourceCount, 5));
    sum += entry.register_ == Register::technical ? 3 : 0;
    sum += entry.lapses() >= config.leechThreshold ? 5 : 0;
    return sum;
}

QString headwordKey(const QString &headword)
{
    return trimmedBlanks(headword).toLower();
}

} // namespace nimbrelle
