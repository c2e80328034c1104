#include "export/GrowthTexts.h"

#include "frame/Text.h"

#include <cmath>

namespace nimbrelle::growth {

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono;

QString number(double value)
{
    return QString::number(value, 'f', 0);
}

QString cell(const QString &element, const QString &text)
{
    return u"<"_s + element + u">"_s + escaped(text) + u"</"_s + element.section(u' ', 0, 0) + u">"_s;
}

} // namespace

QString escaped(const QString &text)
{
    return withoutControls(wellFormed(text.simplified())).toHtmlEscaped();
}

QString shortDayText(local_days day)
{
    const year_month_day date{day};
    return u"%1 月 %2 日"_s.arg(static_cast<unsigned>(date.month())).arg(static_cast<unsigned>(date.day()));
}

QString dayText(local_days day)
{
    return u"%1 年 "_s.arg(static_cast<int>(year_month_day{day}.year())) + shortDayText(day);
}

QString monthText(year_month month)
{
    return u"%1 年 %2 月"_s.arg(static_cast<int>(month.year())).arg(static_cast<unsigned>(month.month()));
}

QString percent(double share)
{
    return number(100 * share) + u'%';
}

QString stabilityText(const RecallBand &band)
{
    if (band.from <= 0)
        return u"能记不到 "_s + number(band.to) + u" 天的词"_s;
    if (std::isinf(band.to))
        return u"能记 "_s + number(band.from) + u" 天以上的词"_s;
    return u"能记 "_s + number(band.from) + u" 到 "_s + number(band.to) + u" 天的词"_s;
}

QString observedText(const RecallBand &band)
{
    const QString counts = u"%1 次里想起 %2 次"_s.arg(band.answers).arg(band.recalled);
    if (band.verdict() == RecallBand::Verdict::tooFew)
        return counts;
    return counts + u"，"_s + percent(band.observed()) + u"（多半在 "_s + percent(band.low) + u" 到 "_s
        + percent(band.high) + u" 之间）"_s;
}

QString verdictText(RecallBand::Verdict verdict)
{
    switch (verdict) {
    case RecallBand::Verdict::tooFew:
        return u"次数还少，先不下结论"_s;
    case RecallBand::Verdict::asPredicted:
        return u"和估计的差不多"_s;
    case RecallBand::Verdict::better:
        return u"比估计的记得牢"_s;
    case RecallBand::Verdict::worse:
        return u"比估计的忘得快一些"_s;
    }
    return {};
}

QString paragraph(const QString &html)
{
    return u"<p>"_s + html + u"</p>\n"_s;
}

QString note(const QString &html)
{
    return u"<p class=\"note\">"_s + html + u"</p>\n"_s;
}

QString list(const QString &style, const QStringList &items)
{
    return u"<ul class=\""_s + style + u"\"><li>"_s + items.join(u"</li>\n<li>"_s) + u"</li></ul>\n"_s;
}

QString table(const QStringList &head, const QList<QStringList> &rows)
{
    QString html = u"<table><thead><tr>"_s;
    for (const QString &title : head)
        html += cell(u"th scope=\"col\""_s, title);
    html += u"</tr></thead><tbody>\n"_s;
    for (const QStringList &row : rows) {
        html += u"<tr>"_s;
        for (qsizetype i = 0; i < row.size(); ++i)
            html += cell(i == 0 ? u"th scope=\"row\""_s : u"td"_s, row[i]);
        html += u"</tr>\n"_s;
    }
    return html + u"</tbody></table>\n"_s;
}

QString folded(const QString &title, const QString &html)
{
    return u"<details><summary>"_s + title + u"</summary>\n"_s + html + u"</details>\n"_s;
}

QString section(const QString &title, const QString &html)
{
    return u"<section>\n<h2>"_s + title + u"</h2>\n"_s + html + u"</section>\n"_s;
}

} // namespace nimbrelle::growth
