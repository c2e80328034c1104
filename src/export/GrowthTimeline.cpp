#include "export/GrowthCharts.h"
#include "export/GrowthSections.h"
#include "export/GrowthTexts.h"

#include <algorithm>

// The sections whose pictures run along time.
namespace nimbrelle::growth {

using namespace Qt::StringLiterals;

namespace {

using charts::Layer;

/// Few columns are not drawn as wide as a page.
QString figure(const QString &caption, const charts::Columns &columns, const QString &below)
{
    const qsizetype width = std::max<qsizetype>(3, columns.names.size()) * 4;
    return u"<figure style=\"max-width:%1rem\">"_s.arg(width) + u"<figcaption><b>"_s + caption
        + u"</b><span>最高 "_s + QString::number(charts::highest(columns.layers)) + u"</span></figcaption>"_s
        + charts::columns(columns) + below + u"</figure>\n"_s;
}

QString ends(const QStringList &names)
{
    return u"<div class=\"axis\" aria-hidden=\"true\"><span>"_s + names.first() + u"</span><span>"_s
        + names.last() + u"</span></div>"_s;
}

QString key(const QList<std::pair<const char *, QString>> &entries)
{
    QStringList items;
    for (const auto &[style, text] : entries)
        items.append(u"<i class=\"%1\"></i>%2"_s.arg(QString::fromLatin1(style), text));
    return list(u"key"_s, items);
}

QString monthsFigure(const QList<GrowthMonth> &months, const QString &caption, const char *style,
    qint64 GrowthMonth::*value, const QString &what)
{
    charts::Columns columns{
        .title = u"每个月%1，数字在下面的表里"_s.arg(what), .layers = {{.style = style, .values = {}}}};
    QStringList names;
    for (const GrowthMonth &month : months) {
        columns.layers[0].values.append(month.*value);
        columns.names.append(monthText(month.month) + u"："_s + QString::number(month.*value));
        names.append(monthText(month.month));
    }
    return figure(caption, columns, ends(names));
}

QStringList monthRow(const QString &name, const GrowthMonth &month)
{
    return {name, QString::number(month.met), QString::number(month.kept), QString::number(month.settled)};
}

QString monthsTable(const GrowthMonths &growth)
{
    QList<QStringList> rows;
    if (growth.earlier)
        rows.append(monthRow(u"更早"_s, *growth.earlier));
    for (const GrowthMonth &month : growth.months)
        rows.append(monthRow(monthText(month.month), month));
    return table({u"月份"_s, u"遇到"_s, u"留下"_s, u"记牢"_s}, rows);
}

QString onlyMonth(const GrowthMonth &month)
{
    const QString settled =
        month.settled > 0 ? u"记牢 %1 个。"_s.arg(month.settled) : u"记牢要过几个星期才看得出来，不急。"_s;
    return paragraph(
        u"%1：遇到 %2 个词，留下 %3 个。"_s.arg(monthText(month.month)).arg(month.met).arg(month.kept)
        + settled);
}

QList<GrowthMonth> tracedMonths(const GrowthMonths &growth)
{
    QList<GrowthMonth> traced;
    std::ranges::copy_if(growth.months, std::back_inserter(traced),
        [](const GrowthMonth &month) { return month.stages.has_value(); });
    return traced;
}

QString stagesFigure(const QList<GrowthMonth> &months)
{
    charts::Columns columns{.title = u"每个月底在学、休息和掌握的词数，数字在下面的表里"_s,
        .layers = {{.style = "good", .values = {}}, {.style = "leaf", .values = {}},
            {.style = "plain", .values = {}}},
        .isTall = true};
    QStringList names;
    for (const GrowthMonth &month : months) {
        const StageCounts &stages = *month.stages;
        columns.layers[0].values.append(stages.mastered);
        columns.layers[1].values.append(stages.learning);
        columns.layers[2].values.append(stages.resting);
        columns.names.append(u"%1：掌握 %2，在学 %3，休息 %4"_s.arg(monthText(month.month))
                                 .arg(stages.mastered)
                                 .arg(stages.learning)
                                 .arg(stages.resting));
        names.append(monthText(month.month));
    }
    return figure(u"月底的词数，最后一格是今天"_s, columns,
        ends(names)
            + key({{"good", u"掌握（最下面）"_s}, {"leaf", u"在学（中间）"_s},
                {"plain", u"休息（最上面）"_s}}));
}

QString stagesTable(const QList<GrowthMonth> &months)
{
    QList<QStringList> rows;
    for (const GrowthMonth &month : months)
        rows.append({monthText(month.month), QString::number(month.stages->learning),
            QString::number(month.stages->resting), QString::number(month.stages->mastered)});
    return table({u"月份"_s, u"在学"_s, u"休息"_s, u"掌握"_s}, rows);
}

QString stagesToday(const GrowthReport &report)
{
    QStringList parts;
    for (const DisplayStage stage : allCases<DisplayStage>()) {
        if (const qint64 count = report.stages[static_cast<std::size_t>(stage)])
            parts.append(label(stage) + u" %1 个"_s.arg(count));
    }
    return paragraph(u"现在："_s + parts.join(u"，"_s) + u"。"_s);
}

QString stagesNotes(const GrowthReport &report)
{
    QString text;
    if (report.logSince)
        text +=
            u"以前的月份按学习记录推算，记录从 %1开始；一次休息按七天算。"_s.arg(dayText(*report.logSince));
    if (report.growth.untraced > 0)
        text += u"有 %1 个词的经过记录不全，只算在最后一个月里。"_s.arg(report.growth.untraced);
    if (report.gone > 0)
        text += u"删掉的词没有画进来。"_s;
    return text.isEmpty() ? QString() : note(text);
}

QString weeksAxis(const GrowthLoad &load)
{
    QString axis = u"<div class=\"axis weeks\" aria-hidden=\"true\">"_s;
    for (qsizetype i = 0; i < load.days.size(); i += 7)
        axis += u"<span>"_s + (i == 0 ? u"今天"_s : shortDayText(load.days[i].day)) + u"</span>"_s;
    return axis + u"</div>"_s;
}

QString loadFigure(const GrowthLoad &load)
{
    charts::Columns columns{.title = u"接下来 28 天每天的题数，按周的数字在下面的表里"_s,
        .layers = {{.style = "leaf", .values = {}}, {.style = "plain", .values = {}}}};
    for (const GrowthLoad::Day &day : load.days) {
        columns.layers[0].values.append(day.due);
        columns.layers[1].values.append(day.fresh);
        columns.names.append(
            u"%1：复习 %2，新学 %3"_s.arg(shortDayText(day.day)).arg(day.due).arg(day.fresh));
    }
    return figure(u"每天的题数"_s, columns,
        weeksAxis(load) + key({{"leaf", u"到期的复习"_s}, {"plain", u"头一回考的新词（上面）"_s}}));
}

QString weeksTable(const GrowthLoad &load)
{
    QList<QStringList> rows;
    for (qsizetype i = 0; i < load.days.size(); i += 7) {
        const auto week = load.days.mid(i, 7);
        qint64 due = 0, fresh = 0;
        for (const GrowthLoad::Day &day : week) {
            due += day.due;
            fresh += day.fresh;
        }
        const qint64 daily = (due + fresh + week.size() - 1) / week.size();
        rows.append({u"%1起"_s.arg(shortDayText(week.first().day)), QString::number(due),
            QString::number(fresh), u"%1 题"_s.arg(daily)});
    }
    return table({u"一周"_s, u"复习"_s, u"新学"_s, u"一天大约"_s}, rows);
}

bool isFree(const GrowthLoad &load)
{
    return std::ranges::all_of(
        load.days, [](const GrowthLoad::Day &day) { return day.due == 0 && day.fresh == 0; });
}

} // namespace

QString monthsSection(const GrowthReport &report)
{
    const auto &months = report.growth.months;
    QString html;
    if (months.size() == 1 && !report.growth.earlier) {
        html = onlyMonth(months.first());
    } else {
        html = u"<div class=\"figures\">\n"_s
            + monthsFigure(months, u"遇到"_s, "leaf", &GrowthMonth::met, u"遇到的词数"_s)
            + monthsFigure(months, u"留下"_s, "plain", &GrowthMonth::kept, u"存下来的词数"_s)
            + monthsFigure(months, u"记牢"_s, "good", &GrowthMonth::settled, u"记牢的词数"_s) + u"</div>\n"_s
            + folded(u"逐月的数字"_s, monthsTable(report.growth));
    }
    html += note(u"同一个词一个月里遇到几次都算一个；记牢是指第一次升到「掌握」。"_s);
    if (report.gone > 0)
        html += note(u"留下的词里有 %1 个后来删掉了，当时的数字还在。"_s.arg(report.gone));
    if (report.growth.undatedSettled > 0)
        html += note(u"另有 %1 个词已经掌握，但哪一天记牢的没有记下来。"_s.arg(report.growth.undatedSettled));
    return section(u"每个月"_s, html);
}

QString stagesSection(const GrowthReport &report)
{
    const QList<GrowthMonth> traced = tracedMonths(report.growth);
    QString html = stagesToday(report);
    if (traced.size() > 1)
        html += stagesFigure(traced) + folded(u"逐月的数字"_s, stagesTable(traced)) + stagesNotes(report);
    return section(u"在学、休息和掌握"_s, html);
}

QString loadSection(const GrowthLoad &load)
{
    const QString title = u"接下来四周"_s;
    if (isFree(load))
        return section(title, paragraph(u"这四周没有词等着。"_s));
    QString html;
    if (load.waiting > 0)
        html += paragraph(
            u"有 %1 个词早些时候就到期了，都算在今天这一格里；分几天看也一样。"_s.arg(load.waiting));
    html += loadFigure(load) + weeksTable(load)
        + note(u"按什么都不变来算：每天看一遍、都想起来，不再存新词，名额和每天新学的数目照现在的设置。"
               u"没想起来的词会回来得早一些，实际会多几题。"_s);
    return section(title, html);
}

} // namespace nimbrelle::growth
