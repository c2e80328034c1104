#include "main/SelfTestAsk.h"

#include "ai/AIClient.h"
#include "frame/Failure.h"

#include <QTextStream>

namespace nimbrelle::SelfTest {

QCoro::Task<> runAsk(const AIClient &client, QTextStream &out)
{
    const auto question = ChatMessage::user(QStringLiteral("用一句中文解释 ngl 是什么意思，不超过 20 字。"));
    try {
        auto stream = client.streamChat({question}, 0.5);
        qsizetype count = 0;
        QString text;
        auto piece = co_await stream.begin();
        while (piece != stream.end()) {
            ++count;
            text += *piece;
            co_await ++piece;
        }
        out << QStringLiteral("OK 收到 %1 段：").arg(count) << text << Qt::endl;
    } catch (const Failure &failure) {
        out << QStringLiteral("FAIL ") << failure.text() << Qt::endl;
    }
}

} // namespace nimbrelle::SelfTest
