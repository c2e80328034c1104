#pragma once

#include "notebook/WordEntry.h"

#include <chrono>

/// The small texts that the learner's record is put together from.
namespace nimbrelle::facts {

/// The Chinese of a rating's case name; any other text unchanged.
QString ratingLabel(const QString &rating);
/// 上午, 下午, 晚上 or 深夜 for a local hour.
QString periodOf(int hour);
/// 星期日 to 星期六.
QString weekdayOf(std::chrono::local_days day);
/// Whole days, or 不到 1 天.
QString formatDays(double days);

/// The first sentence that the learner met, else the first of any kind, else null. Valid as long as `entry`.
const Example *sentenceOf(const WordEntry &entry);
/// The beginning of a sentence, as much as the record holds.
QString beginning(const QString &sentence);
/// Where it was met, such as old.example.org「A thread」. Empty when unknown, and for null.
QString placeOf(const Example *example);
/// "，" and the label of a register that is not neutral.
QString registerSuffix(const WordEntry &entry);
/// One word on one line: its meaning, how well it is known, how far its spelling is.
QString describe(const WordEntry &entry);

} // namespace nimbrelle::facts
