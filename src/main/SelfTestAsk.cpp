#include "main/SelfTestAsk.h"

#include "ai/AIClient.h"
#include "frame/Failure.h"

#include <QTextStream>

using namespace Qt::StringLiterals;

namespace nimbrelle::SelfTest {

QCoro::Task<> runAsk(const AIClient &client, QTextStream &out)
{
    const auto question = ChatMessage::user(u"用一句中文解释 ngl 是什么意思，不超过 20 字。"_s);
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
        out << u"OK 收到 %1 段："_s.arg(count) << text << Qt::endl;
    } catch (const Failure &failure) {
        out << u"FAIL "_s << failure.text() << Qt::endl;
    }
}

} // namespace nimbrelle::SelfTest
