#include "coach/FactPieces.h"
#include "coach/FactTexts.h"
#include "frame/RecordCodec.h"

#include <algorithm>

namespace nimbrelle::facts {

using namespace Qt::StringLiterals;

namespace {

using Entries = QList<Activity>;

bool isRecalled(const QString &rating)
{
    return rating == u"good"_s || rating == u"easy"_s;
}

QStringList labels(const QStringList &ratings)
{
    QStringList texts;
    for (const QString &rating : ratings)
        texts.append(ratingLabel(rating));
    return texts;
}

QString ratingLine(const QString &word, const QStringList &ratings)
{
    return u"- "_s + word + u"："_s + labels(ratings).join(u" → "_s);
}

QString periodsOf(const Entries &day)
{
    QStringList present;
    for (const QString &period : {u"上午"_s, u"下午"_s, u"晚上"_s, u"深夜"_s}) {
        const auto isThen = [&period](const Activity &entry) { return periodOf(entry.local.hour) == period; };
        if (std::any_of(day.cbegin(), day.cend(), isThen))
            present.append(period);
    }
    return present.join(u'、');
}

Entries ofKind(const Entries &entries, LogKind kind)
{
    Entries wanted;
    std::copy_if(entries.cbegin(), entries.cend(), std::back_inserter(wanted),
        [kind](const Activity &entry) { return entry.kind == kind; });
    return wanted;
}

QString ratingCounts(const Entries &reviews)
{
    QStringList counts;
    for (const Rating rating : allCases<Rating>()) {
        const QString name = caseText(rating);
        const auto count = std::count_if(reviews.cbegin(), reviews.cend(),
            [&name](const Activity &review) { return review.detail == name; });
        if (count > 0)
            counts.append(ratingLabel(name) + u' ' + QString::number(count));
    }
    return counts.join(u'、');
}

qsizetype spelledRight(const Entries &spellings)
{
    return std::count_if(spellings.cbegin(), spellings.cend(), [](const Activity &spelling) {
        return spelling.detail.endsWith(u"good"_s) || spelling.detail.endsWith(u"easy"_s);
    });
}

QStringList wordsOf(const Entries &entries)
{
    QStringList words;
    for (const Activity &entry : entries)
        words.append(entry.word);
    return words;
}

QStringList itemsOf(const Entries &day)
{
    QStringList items;
    const auto add = [&](LogKind kind, auto text) {
        const Entries entries = ofKind(day, kind);
        if (!entries.isEmpty())
            items.append(text(entries, QString::number(entries.size())));
    };
    add(LogKind::save, [](const Entries &, const QString &n) { return u"存了 "_s + n + u" 个词"_s; });
    add(LogKind::lookup,
        [](const Entries &, const QString &n) { return u"又查到已存的词 "_s + n + u" 次"_s; });
    add(LogKind::review, [](const Entries &reviews, const QString &n) {
        return u"复习 "_s + n + u" 题（"_s + ratingCounts(reviews) + u"）"_s;
    });
    add(LogKind::spell, [](const Entries &spellings, const QString &n) {
        return u"拼写 "_s + n + u" 次（拼对 "_s + QString::number(spelledRight(spellings)) + u"）"_s;
    });
    add(LogKind::glance,
        [](const Entries &, const QString &n) { return u"点开菜单栏的词看了 "_s + n + u" 次"_s; });
    add(LogKind::graduate, [](const Entries &graduations, const QString &) {
        return u"记牢毕业："_s + wordsOf(graduations).join(u", "_s);
    });
    return items;
}

/// By headword in lower case; where two are the same, the first.
QHash<QString, const WordEntry *> byHeadword(const QList<WordEntry> &words)
{
    QHash<QString, const WordEntry *> found;
    for (const WordEntry &word : words) {
        const auto &known = found[word.headword.toLower()];
        if (!known)
            found.insert(word.headword.toLower(), &word);
    }
    return found;
}

QString oneLine(QString text)
{
    return text.replace(u"\r\n"_s, u" "_s).replace(u'\n', u' ').replace(u'\r', u' ');
}

QString knowledgeOf(const WordEntry &entry)
{
    QString text = u"。意思："_s + entry.meaningZh;
    if (const Example *example = sentenceOf(entry))
        text += u"。原句："_s + beginning(example->sentence);
    if (entry.mnemonic)
        text += u"。已经给过的联想："_s + oneLine(*entry.mnemonic);
    return text;
}

QString spellingText(QString rating)
{
    rating.replace(u"again"_s, u"拼错"_s).replace(u"hard"_s, u"有小错"_s);
    rating.replace(u"good"_s, u"拼对"_s).replace(u"easy"_s, u"拼对"_s);
    return u"拼写（"_s + rating + u"）"_s;
}

/// What became of the word; absent for an event that says nothing of that.
std::optional<QString> outcomeOf(const Activity &entry)
{
    if (!entry.kind)
        return std::nullopt;
    switch (*entry.kind) {
    case LogKind::review:
        return ratingLabel(entry.detail);
    case LogKind::spell:
        return spellingText(entry.detail);
    case LogKind::graduate:
        return u"毕业了"_s;
    case LogKind::leech:
        return u"变成难啃的词"_s;
    case LogKind::rest:
        return u"先休息"_s;
    default:
        return std::nullopt;
    }
}

} // namespace

QStringList timeOfDay(const ActivityLog &log, const QString &today)
{
    const auto [day, hour] = log.now();
    return {u"现在："_s + today + u' ' + weekdayOf(day) + u' ' + periodOf(hour) + u' ' + QString::number(hour)
        + u" 点"_s};
}

QStringList firstUse(const ActivityLog &log)
{
    const auto &days = log.days();
    if (days.empty())
        return {};
    return {u"第一次用 Nimbrelle 的记录："_s + days.begin()->second + u"。有记录的日子一共 "_s
        + QString::number(days.size()) + u" 天"_s};
}

QStringList lastStudyDay(const ActivityLog &log)
{
    const auto &days = log.days();
    const auto isOther = [&log](const auto &day) { return day.first != log.now().day; };
    const auto last = std::find_if(days.rbegin(), days.rend(), isOther);
    if (last == days.rend())
        return {};
    return {u"今天之前最近一次学习："_s + last->second + u"（"_s
        + QString::number((log.now().day - last->first).count()) + u" 天前）"_s};
}

QStringList recentDays(const ActivityLog &log)
{
    if (log.recent().isEmpty())
        return {};
    std::map<std::chrono::local_days, Entries> byDay;
    for (const Activity &entry : log.recent())
        byDay[entry.local.day].append(entry);

    QStringList lines{u"\n最近两周每天的记录（只列有活动的日子）："_s};
    for (const auto &[day, entries] : byDay) {
        const QStringList items = itemsOf(entries);
        if (!items.isEmpty())
            lines.append(
                u"- "_s + log.days().at(day) + u"（"_s + periodsOf(entries) + u"）："_s + items.join(u'；'));
    }
    return lines;
}

QStringList forgottenWords(const ActivityLog &log, const QList<WordEntry> &words)
{
    const auto reviews = log.recentDetails(LogKind::review);
    const auto known = byHeadword(words);
    QStringList lines;
    for (auto word = reviews.cbegin(); word != reviews.cend(); ++word) {
        if (word->count(u"again"_s) < 2)
            continue;
        QString line = ratingLine(word.key(), *word);
        if (const WordEntry *entry = known.value(headwordKey(word.key())))
            line += knowledgeOf(*entry);
        lines.append(line);
    }
    if (!lines.isEmpty())
        lines.prepend(u"\n最近两周忘过两次以上的词："_s);
    return lines;
}

QStringList recalledWords(const ActivityLog &log)
{
    const auto reviews = log.recentDetails(LogKind::review);
    QStringList words;
    for (auto word = reviews.cbegin(); word != reviews.cend(); ++word) {
        const QStringList &ratings = *word;
        const qsizetype count = ratings.size();
        if (count >= 2 && isRecalled(ratings[count - 1]) && isRecalled(ratings[count - 2]))
            words.append(word.key());
    }
    if (words.isEmpty())
        return {};
    return {u"最近两次都想起来了的词："_s + words.join(u", "_s)};
}

QStringList recentSpelling(const ActivityLog &log)
{
    const auto spellings = log.recentDetails(LogKind::spell);
    QStringList lines;
    for (auto word = spellings.cbegin(); word != spellings.cend(); ++word)
        lines.append(ratingLine(word.key(), *word));
    if (!lines.isEmpty())
        lines.prepend(u"最近两周每个词的拼写结果（按时间先后）："_s);
    return lines;
}

qint64 reviewsToday(const ActivityLog &log)
{
    return std::count_if(log.entries().cbegin(), log.entries().cend(),
        [&log](const Activity &entry) { return entry.kind == LogKind::review && log.isToday(entry); });
}

QStringList outcomesToday(const ActivityLog &log)
{
    QStringList order;
    QHash<QString, QStringList> outcomes;
    for (const Activity &entry : log.entries()) {
        const auto outcome = log.isToday(entry) ? outcomeOf(entry) : std::nullopt;
        if (!outcome)
            continue;
        if (!outcomes.contains(entry.word))
            order.append(entry.word);
        outcomes[entry.word].append(*outcome);
    }
    QStringList lines;
    for (const QString &word : std::as_const(order))
        lines.append(word + u"："_s + outcomes[word].join(u" → "_s));
    return lines;
}

} // namespace nimbrelle::facts
