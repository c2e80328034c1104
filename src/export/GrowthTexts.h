#pragma once

#include "export/GrowthReport.h"

#include <QString>

/// How the report says days, shares and other people's words.
namespace nimbrelle::growth {

/// Text from outside, safe inside HTML and on one line.
QString escaped(const QString &text);

QString dayText(std::chrono::local_days day); ///< 2026 年 11 月 23 日
QString shortDayText(std::chrono::local_days day); ///< 11 月 23 日
QString monthText(std::chrono::year_month month); ///< 2026 年 11 月
QString percent(double share); ///< 93%
/// The words of a band, such as 能记 7 到 30 天的词.
QString stabilityText(const RecallBand &band);
/// What was seen of a band, in words where the numbers are small.
QString observedText(const RecallBand &band);
QString verdictText(RecallBand::Verdict verdict);

QString paragraph(const QString &html);
QString note(const QString &html);
/// An element of a list for each of `items`, which are HTML.
QString list(const QString &style, const QStringList &items);
/// A table whose first column names the rows. Everything in it is plain text.
QString table(const QStringList &head, const QList<QStringList> &rows);
QString folded(const QString &title, const QString &html);
QString section(const QString &title, const QString &html);

} // namespace nimbrelle::growth
