#pragma once

#include "ai/AIClient.h"
#include "frame/TaskSlot.h"

#include <QObject>

namespace nimbrelle {

class ConfigStore;
class WordStore;

/// Behind the window in which the user types a word or a Chinese phrase: asks the AI, and keeps what it says.
/// Main thread only.
class AddWordModel : public QObject {
    Q_OBJECT

public:
    AddWordModel(const ConfigStore &config, WordStore &words, AIClientFactory newClient);
    ~AddWordModel() override;

    const QString &word() const { return m_word; }
    const QString &sentence() const { return m_sentence; }
    bool showSentence() const { return m_showSentence; }
    const std::optional<LookupResult> &result() const { return m_result; }
    const QString &asked() const { return m_asked; } ///< the query as it was sent
    const QString &error() const { return m_error; } ///< empty for none
    bool isLoading() const { return m_isLoading; }
    const QString &lastSaved() const { return m_lastSaved; } ///< what was just kept; empty for nothing

    QString lookupLabel() const;
    /// What the AI spelled otherwise; empty when it did not.
    QString correction() const;
    /// Whether the word in hand is in the notebook, and whether it is on the always-spell list.
    bool isKnown() const;
    bool isSpelled() const;

    /// As typed; these emit nothing.
    void setWord(const QString &word) { m_word = word; }
    void setSentence(const QString &sentence) { m_sentence = sentence; }

    void addSentence();
    void lookup();
    /// Another way to say the query takes its place.
    void lookupAlternative(const QString &text);
    void save();
    void addSpelling();
    void reset();

signals:
    void changed();
    void wordChanged(); ///< not by typing
    void wasReset(); ///< the user begins anew in the word field

private:
    QCoro::Task<> ask(QString query, QString sentence, std::stop_token stop);

    const ConfigStore &m_config;
    WordStore &m_words;
    const AIClientFactory m_newClient;

    QString m_word;
    QString m_sentence;
    bool m_showSentence = false;
    std::optional<LookupResult> m_result;
    QString m_asked;
    QString m_error;
    bool m_isLoading = false;
    QString m_lastSaved;
    TaskSlot m_task;
};

} // namespace nimbrelle
