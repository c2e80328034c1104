#pragma once

#include "frame/Recheck.h"
#include "notebook/WordEntry.h"

#include <QObject>

namespace nimbrelle {

class ConfigStore;
class LearningLog;
class WordStore;

/// Keeps one word of the learning set in sight: each is shown once in a shuffled pass before any comes
/// again. It goes on rotating while the setting is off, with nothing on show. Main thread only.
class MenuBarWord : public QObject {
    Q_OBJECT

public:
    using Shuffle = std::function<void(QList<QUuid> &ids)>;

    MenuBarWord(WordStore &store, const ConfigStore &config, LearningLog &log, Clock &clock,
        QObject *parent = nullptr);

    /// Tests hand in an order of their own; by default it is random.
    void setShuffle(Shuffle shuffle) { m_shuffle = std::move(shuffle); }

    /// Shows the first word and begins the rotation, a word every 20 minutes. Call it once.
    void start();
    void next();

    /// The word on show. Absent while the setting is off, and when the word has left the learning set.
    std::optional<WordEntry> entry() const;
    std::optional<QUuid> current() const { return m_current; }

    /// The menu was opened on the word: goes into the learning log, once for each word shown.
    void glance();

signals:
    /// After every next(), whether or not another word is on show.
    void changed();

private:
    QList<QUuid> learningIds() const;
    void beginPass(const QList<QUuid> &ids);
    void replaceMissing();

    WordStore &m_store;
    const ConfigStore &m_config;
    LearningLog &m_log;
    Shuffle m_shuffle;

    std::optional<QUuid> m_current;
    bool m_glanced = false;
    QList<QUuid> m_queue; ///< still to come in this pass
    Recheck m_rotation;
};

} // namespace nimbrelle
