#include "coach/CoachFacts.h"

#include "coach/FactPieces.h"
#include "frame/ConfigStore.h"
#include "frame/DayKey.h"
#include "notebook/WordStore.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QStringList workload(qint64 done, qint64 next)
{
    return {u"\n今天已经复习了 "_s + QString::number(done) + u" 题。现在打开复习，这一轮有 "_s
        + QString::number(next) + u" 题，每题大约 15～20 秒"_s};
}

} // namespace

CoachFacts::CoachFacts(const WordStore &words, const ConfigStore &config, const LearningLog &log)
    : m_words(words), m_config(config), m_log(log)
{
}

QList<LearningLog::Event> CoachFacts::events() const
{
    return m_log.events();
}

QString CoachFacts::build(Timestamp now) const
{
    const ActivityLog log(events(), now);
    const QList<WordEntry> &words = m_words.entries();
    const AppConfig &config = m_config.config();

    const QList<QStringList> pieces{
        facts::timeOfDay(log, DayKey::string(now)),
        facts::firstUse(log),
        facts::lastStudyDay(log),
        facts::interests(m_words.topInterests()),
        facts::recentDays(log),
        facts::newWords(words, now),
        facts::stageCounts(words, config, now),
        facts::learningWords(words),
        facts::forgottenWords(log, words),
        facts::recalledWords(log),
        facts::hardWords(words, config.leechThreshold),
        facts::restingWords(words),
        facts::masteredWords(words),
        facts::recentSpelling(log),
        facts::spellPracticeWords(words, m_words.spellPracticeCount()),
        workload(facts::reviewsToday(log), m_words.sessionCount(now)),
    };
    QStringList lines;
    for (const QStringList &piece : pieces)
        lines += piece;
    return lines.join(u'\n');
}

QString CoachFacts::todayReview(Timestamp now) const
{
    const std::pair at(m_log.stamp(), DayKey::string(now));
    if (m_readAt != at) {
        m_todayReview = facts::outcomesToday(ActivityLog(events(), now)).join(u'\n');
        m_readAt = at;
    }
    return m_todayReview;
}

} // namespace nimbrelle
