#include "Texts.h"
#include "coach/FactPieces.h"
#include "frame/AppConfig.h"
#include "frame/LineFile.h"
#include "frame/RecordCodec.h"

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

namespace {

QList<LearningLog::Event> eventsIn(QByteArrayView file)
{
    QList<LearningLog::Event> events;
    for (const QByteArrayView line : linesOf(file)) {
        require(!line.isEmpty() && !line.contains('\n'));
        if (const auto event = decode<LearningLog::Event>(line))
            events.append(*event);
    }
    return events;
}

// Every word that the diary speaks of stands in the notebook too.
QList<WordEntry> notebookOf(const QList<LearningLog::Event> &events)
{
    QList<WordEntry> words;
    for (const LearningLog::Event &event : events.first(std::min<qsizetype>(events.size(), 20))) {
        WordEntry word;
        word.headword = event.word;
        word.meaningZh = event.detail.value_or(QString());
        word.createdAt = event.time;
        words.append(word);
    }
    return words;
}

} // namespace

/// The log as a file, with "now" as the time of its last event: each text for the coach comes out, whatever
/// the diary says, and no line of it holds a line break of the diary.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView file(data, static_cast<qsizetype>(size));
    const QList<LearningLog::Event> events = eventsIn(file);
    const Timestamp now = events.isEmpty() ? Timestamp() : events.last().time;
    const ActivityLog log(events, now);
    require(log.entries().size() <= events.size());
    require(log.recent().size() <= log.entries().size());
    const QList<WordEntry> words = notebookOf(events);
    for (const QStringList &piece :
        {facts::timeOfDay(log, QString()), facts::firstUse(log), facts::lastStudyDay(log),
            facts::recentDays(log), facts::forgottenWords(log, words), facts::recalledWords(log),
            facts::recentSpelling(log), facts::outcomesToday(log), facts::newWords(words, now),
            facts::stageCounts(words, AppConfig(), now), facts::learningWords(words)})
        for (const QString &line : piece)
            require(!line.isEmpty());
    require(facts::reviewsToday(log) >= 0 && facts::reviewsToday(log) <= events.size());
    return 0;
}
