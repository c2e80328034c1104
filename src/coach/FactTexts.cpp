#include "coach/FactTexts.h"

#include "frame/RecordCodec.h"
#include "frame/Text.h"
#include "notebook/PageSource.h"
#include "review/SpellMode.h"

#include <algorithm>
#include <cmath>

namespace nimbrelle::facts {

using namespace Qt::StringLiterals;

QString ratingLabel(const QString &rating)
{
    const auto known = caseFrom<Rating>(rating);
    if (!known)
        return rating;
    switch (*known) {
    case Rating::again:
        return u"没想起来"_s;
    case Rating::hard:
        return u"费劲想起"_s;
    case Rating::good:
        return u"想起来了"_s;
    case Rating::easy:
        return u"太简单"_s;
    }
    return {};
}

QString periodOf(int hour)
{
    if (hour >= 5 && hour <= 11)
        return u"上午"_s;
    if (hour >= 12 && hour <= 17)
        return u"下午"_s;
    return hour >= 18 && hour <= 22 ? u"晚上"_s : u"深夜"_s;
}

QString weekdayOf(std::chrono::local_days day)
{
    static const QString names = u"日一二三四五六"_s;
    return u"星期"_s + names[std::chrono::weekday{day}.c_encoding()];
}

QString formatDays(double days)
{
    return days < 1 ? u"不到 1 天"_s : QString::number(std::round(days), 'f', 0) + u" 天"_s;
}

const Example *sentenceOf(const WordEntry &entry)
{
    const auto met = std::find_if(entry.examples.cbegin(), entry.examples.cend(),
        [](const Example &example) { return !example.isGenerated; });
    if (met != entry.examples.cend())
        return &*met;
    return entry.examples.isEmpty() ? nullptr : &entry.examples.first();
}

QString beginning(const QString &sentence)
{
    return firstCharacters(sentence, 110);
}

QString placeOf(const Example *example)
{
    if (!example)
        return {};
    const auto host = hostOf(example->sourceURL);
    const QString site = host ? *host : example->sourceApp.value_or(QString());
    const QString title = firstCharacters(example->sourceTitle.value_or(QString()), 50);
    return title.isEmpty() ? site : site + u"「"_s + title + u"」"_s;
}

QString registerSuffix(const WordEntry &entry)
{
    return entry.register_ == Register::neutral ? QString() : u"，"_s + label(entry.register_);
}

QString describe(const WordEntry &entry)
{
    QString text = entry.headword + u"（"_s + entry.meaningZh + registerSuffix(entry) + u"）"_s;
    if (entry.review)
        text += u"：复习 "_s + QString::number(entry.review->reps) + u" 次，忘 "_s
            + QString::number(entry.review->lapses) + u" 次，现在大约能记 "_s
            + formatDays(entry.review->stability);
    else
        text += u"：还没复习过"_s;
    if (entry.register_ == Register::slang) // slang is not practised in writing
        return text;
    return text + u"，拼写练到「"_s + label(spellModeForLevel(entry.spellLevel.value_or(0))) + u"」"_s;
}

} // namespace nimbrelle::facts
