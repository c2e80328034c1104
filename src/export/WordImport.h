#pragma once

#include "ai/AIClient.h"
#include "frame/DamagedFiles.h"
#include "frame/TaskSlot.h"

#include <QObject>
#include <QSet>

namespace nimbrelle {

class AppPaths;
class Clock;
class ConfigStore;
class WordStore;

/// What of an imported list is still to be looked up, in lookup-queue.json.
struct LookupQueue {
    QStringList words; ///< the next one first
    qint64 saved = 0;
    qint64 known = 0; ///< that turned out to be in the notebook, and were left as they are
    QStringList failed; ///< for which no explanation was to be had
    bool isPaused = false; ///< by the user, or by a failure that all others would share

    bool operator==(const LookupQueue &) const = default;
};
template <> inline constexpr bool missingTakesDefault<LookupQueue> = true;
template <Is<LookupQueue> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("words", &Record::words), field("saved", &Record::saved), field("known", &Record::known),
        field("failed", &Record::failed), field("isPaused", &Record::isPaused));

/// Looks the words of a list up and saves them, one after another, and goes on where it was after a restart.
/// A wrong or missing key, an empty account and three failures in a row pause it, the three to be tried once
/// more; without a network it waits and tries again by itself. Main thread only.
class WordImport : public QObject {
    Q_OBJECT

public:
    enum class State { idle, looking, waiting, paused };

    /// Reads the queue and does nothing else before start() or add().
    WordImport(WordStore &words, const ConfigStore &config, const AppPaths &paths, Clock &clock,
        AIClientFactory newClient, DataWriter &writer = DataWriter::shared());

    /// Goes on with what an earlier run of the program left, unless that was paused.
    void start();
    /// Puts the words that are not saved yet behind those that wait, and goes on. Returns how many of them
    /// wait now.
    qsizetype add(const QStringList &words);
    void pause();
    void resume();
    /// One or the other, under the name of what it does.
    void toggle();
    QString toggleLabel() const;
    /// Forgets what waits; what was saved stays.
    void cancel();

    State state() const { return m_state; }
    /// Of all that were added since the queue was last empty.
    qint64 settledCount() const;
    qint64 total() const;
    /// What it is doing, or how it ended; empty when nothing was ever added.
    QString statusText() const;

signals:
    void changed();
    /// What became of one word.
    void wordSettled(const QString &line);

private:
    QCoro::Task<> run(std::stop_token stop);
    void take(const Explanation &explanation);
    void meet(const std::exception &failure);
    void putBack();
    void halt(const QString &reason);
    /// The word in hand is done with.
    void settle(const QString &line);
    void setState(State state);
    void write();

    WordStore &m_words;
    const ConfigStore &m_config;
    Clock &m_clock;
    const AIClientFactory m_newClient;
    const QString m_path;
    DamagedFiles m_damaged;
    LookupQueue m_queue;
    State m_state = State::idle;
    QString m_notice; ///< why it waits or was paused; empty for the user's own pause
    QStringList m_inARow; ///< failed one after the other
    QSet<QString> m_putBack; ///< that failed and got another try
    TaskSlot m_task;
};

} // namespace nimbrelle
