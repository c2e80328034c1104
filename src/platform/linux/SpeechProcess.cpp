#include "platform/linux/SpeechProcess.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace nimbrelle {
namespace {

constexpr int endLimitMs = 200;

} // namespace

SpeechCommand SpeechProcess::installed()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    const QString dispatcher = QStandardPaths::findExecutable(QStringLiteral("spd-say"));
    if (!dispatcher.isEmpty()
        && QFileInfo::exists(runtime + QStringLiteral("/speech-dispatcher/speechd.sock")))
        return {dispatcher,
            {QStringLiteral("--wait"), QStringLiteral("--language"), QStringLiteral("en-US"),
                QStringLiteral("--rate"), QStringLiteral("-10"), QStringLiteral("--pipe-mode")}};
    for (const QString &name : {QStringLiteral("espeak-ng"), QStringLiteral("espeak")}) {
        const QString program = QStandardPaths::findExecutable(name);
        if (!program.isEmpty())
            return {program,
                {QStringLiteral("-v"), QStringLiteral("en-us"), QStringLiteral("-s"), QStringLiteral("150"),
                    QStringLiteral("--stdin")}};
    }
    return {};
}

SpeechProcess::~SpeechProcess()
{
    end();
    for (QProcess *dying : m_processes.findChildren<QProcess *>())
        dying->waitForFinished(endLimitMs);
}

void SpeechProcess::speak(const QString &text)
{
    end();
    if (m_command.program.isEmpty())
        return;
    m_speaking = new QProcess(&m_processes);
    QObject::connect(m_speaking, &QProcess::finished, m_speaking, &QObject::deleteLater);
    m_speaking->setStandardOutputFile(QProcess::nullDevice());
    m_speaking->setStandardErrorFile(QProcess::nullDevice());
    m_speaking->start(m_command.program, m_command.arguments);
    m_speaking->write(text.toUtf8() + '\n');
    m_speaking->closeWriteChannel();
}

/// Cuts off without waiting: what was killed is reaped when the event loop hears of its end.
void SpeechProcess::end()
{
    if (!m_speaking)
        return;
    if (m_speaking->state() == QProcess::NotRunning)
        m_speaking->deleteLater(); // it never started
    else
        m_speaking->kill();
    m_speaking.clear();
}

} // namespace nimbrelle
