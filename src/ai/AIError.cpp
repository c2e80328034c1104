#include "ai/AIError.h"

#include "frame/Text.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

QString textOf(AIError::Kind kind)
{
    switch (kind) {
    case AIError::Kind::noKey:
        return u"还没有填 DeepSeek API key，请在设置里填写。"_s;
    case AIError::Kind::unauthorized:
        return u"API key 不正确，请在设置里检查一下。"_s;
    case AIError::Kind::noBalance:
        return u"DeepSeek 账户余额不足，请先充值。"_s;
    case AIError::Kind::http:
    case AIError::Kind::badResponse:
        break;
    }
    return u"AI 返回的内容看不懂，再试一次吧。"_s;
}

} // namespace

AIError::AIError(Kind kind) : Failure(textOf(kind)), m_kind(kind) { }

AIError::AIError(qint64 status, const QString &text) : Failure(text), m_kind(Kind::http), m_status(status) { }

AIError AIError::ofStatus(qint64 status, const QString &detail, const QString &key)
{
    constexpr qint64 unauthorized = 401, paymentRequired = 402;
    constexpr qsizetype shownCharacters = 200;
    if (status == unauthorized)
        return AIError(Kind::unauthorized);
    if (status == paymentRequired)
        return AIError(Kind::noBalance);
    const QString shown = firstCharacters(withoutSecret(detail, key), shownCharacters);
    // No QString::arg: the detail may hold a %1 of its own.
    return AIError(status, u"DeepSeek 返回错误 "_s + QString::number(status) + u'：' + shown);
}

} // namespace nimbrelle
