#include "platform/linux/speech/SpeechProcess.h"

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace nimbrelle {

SpeechCommand SpeechProcess::installed()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    const QString dispatcher = QStandardPaths::findExecutable(u"spd-say"_s);
    if (!dispatcher.isEmpty() && QFileInfo::exists(runtime + u"/speech-dispatcher/speechd.sock"_s))
        return {
            dispatcher, {u"--wait"_s, u"--language"_s, u"en-US"_s, u"--rate"_s, u"-10"_s, u"--pipe-mode"_s}};
    for (const QString &name : {u"espeak-ng"_s, u"espeak"_s}) {
        const QString program = QStandardPaths::findExecutable(name);
        if (!program.isEmpty())
            return {program, {u"-v"_s, u"en-us"_s, u"-s"_s, u"150"_s, u"--stdin"_s}};
    }
    return {};
}

// Its own process is killed and reaped here, for no event loop may come after this.
SpeechProcess::~SpeechProcess() = default;

void SpeechProcess::speak(const QString &text)
{
    end();
    if (m_command.program.isEmpty())
        return;
    m_process = std::make_unique<QProcess>();
    m_process->setStandardOutputFile(QProcess::nullDevice());
    m_process->setStandardErrorFile(QProcess::nullDevice());
    m_process->start(m_command.program, m_command.arguments);
    m_process->write(text.toUtf8() + '\n');
    m_process->closeWriteChannel();
}

// Cuts off without waiting: what was killed is reaped when the event loop hears of its end.
void SpeechProcess::end()
{
    if (!m_process || m_process->state() == QProcess::NotRunning) {
        m_process.reset();
        return;
    }
    QProcess *process = m_process.release();
    // A program that could not be started never finishes, so the state tells.
    QObject::connect(process, &QProcess::stateChanged, process, [process](QProcess::ProcessState state) {
        if (state == QProcess::NotRunning)
            process->deleteLater();
    });
    process->kill();
}

} // namespace nimbrelle
