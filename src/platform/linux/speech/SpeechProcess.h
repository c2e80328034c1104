#pragma once

#include "platform/Speaker.h"

#include <QProcess>
#include <QStringList>

#include <memory>

namespace nimbrelle {

/// A program and its arguments; the text goes to its standard input, for a text may begin with a dash.
struct SpeechCommand {
    QString program;
    QStringList arguments;

    bool operator==(const SpeechCommand &) const = default;
};

/// Speaks through a child process, which can neither block nor bring down ours.
class SpeechProcess final : public Speaker {
public:
    /// Takes the session's speech dispatcher where one runs, else a synthesizer that is installed.
    SpeechProcess() : SpeechProcess(installed()) { }
    explicit SpeechProcess(SpeechCommand command) : m_command(std::move(command)) { }
    ~SpeechProcess() override;

    void speak(const QString &text) override;

    /// Empty where nothing can speak.
    static SpeechCommand installed();

private:
    void end();

    SpeechCommand m_command;
    std::unique_ptr<QProcess> m_process;
};

} // namespace nimbrelle
