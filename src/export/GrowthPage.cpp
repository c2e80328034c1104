#include "export/GrowthPage.h"

#include "export/GrowthSections.h"
#include "export/GrowthStyle.h"
#include "export/GrowthTexts.h"

#include <numeric>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

using namespace growth;

qint64 sum(const GrowthMonths &growth, qint64 GrowthMonth::*value)
{
    const qint64 earlier = growth.earlier ? (*growth.earlier).*value : 0;
    return std::accumulate(growth.months.begin(), growth.months.end(), earlier,
        [value](qint64 before, const GrowthMonth &month) { return before + month.*value; });
}

QString lead(const GrowthReport &report)
{
    const qint64 settled = sum(report.growth, &GrowthMonth::settled) + report.growth.undatedSettled;
    QString text = u"从 %1到现在，留下了 %2 个词"_s.arg(dayText(*report.since))
                       .arg(sum(report.growth, &GrowthMonth::kept));
    text += settled > 0 ? u"，其中 %1 个记牢了。"_s.arg(settled) : u"。"_s;
    return u"<p class=\"lead\">"_s + text + u"</p>\n"_s;
}

QString sections(const GrowthReport &report)
{
    return monthsSection(report) + stagesSection(report) + recallSection(report.recall)
        + collectionSection(report.collection) + sourcesSection(report.sources)
        + memoriesSection(report.memories) + loadSection(report.load);
}

QString empty()
{
    return section(u"还是一张白纸"_s,
        paragraph(
            u"生词本里还没有词。读英文时划一个词，觉得有用就存下来；过些日子再来，这里会看到它们怎样一点点留住。"_s));
}

QString footer(const GrowthReport &report)
{
    QString html = u"<footer>\n"_s;
    if (report.aheadOfTime > 0)
        html += paragraph(
            u"有 %1 条记录的时间在以后，大概是那时电脑的钟快了，没有算进来。"_s.arg(report.aheadOfTime));
    return html + paragraph(u"这一页由 Nimbrelle 在这台电脑上写成，只含你自己的数据，不连网。"_s)
        + u"</footer>\n"_s;
}

} // namespace

QByteArray growthPage(const GrowthReport &report)
{
    QString html = u"<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\"/>\n"
                   "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"
                   "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
                   "'unsafe-inline'\"/>\n"
                   "<meta name=\"color-scheme\" content=\"light dark\"/>\n<title>成长档案</title>\n<style>"_s
        + growthStyle + u"</style>\n</head>\n<body>\n<header>\n<h1>成长档案</h1>\n"_s
        + note(u"写于 "_s + dayText(report.today));
    html += report.since ? lead(report) + u"</header>\n<main>\n"_s + sections(report)
                         : u"</header>\n<main>\n"_s + empty();
    return (html + u"</main>\n"_s + footer(report) + u"</body>\n</html>\n"_s).toUtf8();
}

} // namespace nimbrelle
