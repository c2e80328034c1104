#include "export/GrowthCharts.h"

#include <algorithm>

namespace nimbrelle::charts {

using namespace Qt::StringLiterals;

namespace {

constexpr double fullHeight = 100;
constexpr double step = 10;
constexpr double widestColumn = 7;
constexpr qsizetype fewColumns = 4; // fewer are drawn narrower, or they would look like walls
constexpr double leastHeight = 2; // so that one can be told from none

QString number(double value)
{
    return QString::number(value, 'f', 2);
}

QString titled(const QString &title)
{
    return u"<title>"_s + title.toHtmlEscaped() + u"</title>"_s;
}

QString rect(const QString &style, double x, double y, double width, double height)
{
    return u"<rect class=\"%1\" x=\"%2\" y=\"%3\" width=\"%4\" height=\"%5\"/>"_s.arg(
        style, number(x), number(y), number(width), number(height));
}

QString upright(const QString &style, double x)
{
    return u"<line class=\"%1\" x1=\"%2\" y1=\"0\" x2=\"%2\" y2=\"100\"/>"_s.arg(style, number(x));
}

qint64 total(const QList<Layer> &layers, qsizetype column)
{
    qint64 sum = 0;
    for (const Layer &layer : layers)
        sum += layer.values.value(column);
    return sum;
}

QString column(const Columns &columns, qsizetype at, qint64 top)
{
    QString parts;
    const auto count = static_cast<double>(std::min(columns.names.size(), fewColumns));
    const double width = widestColumn * count / static_cast<double>(fewColumns);
    double y = fullHeight;
    for (const Layer &layer : columns.layers) {
        const qint64 value = layer.values.value(at);
        if (value <= 0)
            continue;
        const double height =
            std::max(leastHeight, fullHeight * static_cast<double>(value) / static_cast<double>(top));
        y -= height;
        parts += rect(QString::fromLatin1(layer.style), static_cast<double>(at) * step + (step - width) / 2,
            y, width, height);
    }
    return u"<g>"_s + titled(columns.names.value(at)) + parts + u"</g>"_s;
}

} // namespace

qint64 highest(const QList<Layer> &layers)
{
    qint64 top = 0;
    for (qsizetype i = 0; !layers.isEmpty() && i < layers.first().values.size(); ++i)
        top = std::max(top, total(layers, i));
    return top;
}

QString columns(const Columns &columns)
{
    const qsizetype count = columns.names.size();
    const qint64 top = std::max<qint64>(1, highest(columns.layers));
    QString svg =
        u"<svg class=\"bars%1\" role=\"img\" viewBox=\"0 0 %2 100\" preserveAspectRatio=\"none\">"_s.arg(
            columns.isTall ? u" tall"_s : QString(), QString::number(static_cast<double>(count) * step));
    svg += titled(columns.title);
    for (qsizetype i = 0; i < count; ++i)
        svg += column(columns, i, top);
    return svg + u"</svg>"_s;
}

QString share(const Share &share)
{
    const auto place = [&share](double value) {
        return 100 * std::clamp((value - share.from) / (1 - share.from), 0.0, 1.0);
    };
    return u"<svg class=\"share\" role=\"img\" viewBox=\"0 0 100 100\" preserveAspectRatio=\"none\">"_s
        + titled(share.title) + rect(u"track"_s, 0, 20, 100, 60)
        + rect(u"span"_s, place(share.low), 20, place(share.high) - place(share.low), 60)
        + upright(u"guess"_s, place(share.expected)) + upright(u"seen"_s, place(share.seen)) + u"</svg>"_s;
}

QString length(double part)
{
    return u"<svg class=\"length\" aria-hidden=\"true\" viewBox=\"0 0 100 100\" preserveAspectRatio=\"none\">"_s
        + rect(u"track"_s, 0, 0, 100, 100) + rect(u"leaf"_s, 0, 0, std::max(1.0, 100 * part), 100)
        + u"</svg>"_s;
}

} // namespace nimbrelle::charts
