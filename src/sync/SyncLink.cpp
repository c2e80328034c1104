#include "sync/SyncLink.h"

#include "frame/AppConfig.h"
#include "frame/Text.h"

#include <QHash>
#include <QStringDecoder>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

const QString prefix = u"nimbrelle://sync?"_s;

// What a URL's query may hold as it stands, less "&", "=" and "?".
QString percentEncoded(const QString &text)
{
    if (!text.isValidUtf16())
        return text;
    return QString::fromLatin1(QUrl::toPercentEncoding(text, "!$'()*+,;:@/"));
}

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool hasBrokenSequence(const QByteArray &text)
{
    for (qsizetype at = text.indexOf('%'); at >= 0; at = text.indexOf('%', at + 1)) {
        if (at + 2 >= text.size() || !isHexDigit(text[at + 1]) || !isHexDigit(text[at + 2]))
            return true;
    }
    return false;
}

// The raw text where a sequence is broken or the bytes are no UTF-8. A "+" is a plus here.
QString percentDecoded(const QString &raw)
{
    const QByteArray encoded = raw.toUtf8();
    if (!raw.isValidUtf16() || hasBrokenSequence(encoded))
        return raw;
    QStringDecoder decode(
        QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString decoded = decode(QByteArray::fromPercentEncoding(encoded));
    return decode.hasError() ? raw : decoded;
}

// What follows the prefix, up to the first white space.
std::optional<QString> queryIn(const QString &text)
{
    const qsizetype at = text.indexOf(prefix, 0, Qt::CaseInsensitive);
    if (at < 0)
        return std::nullopt;
    const auto isSpace = [](QChar c) { return c.isSpace(); };
    const auto from = std::find_if_not(text.cbegin() + at + prefix.size(), text.cend(), isSpace);
    return QString(from, std::find_if(from, text.cend(), isSpace) - from);
}

QHash<QString, QString> valuesOf(const QString &query)
{
    QHash<QString, QString> values;
    for (const QString &piece : query.split(u'&', Qt::SkipEmptyParts)) {
        const qsizetype sign = piece.indexOf(u'=');
        const QString key = piece.left(sign);
        if (sign < 1 || sign == piece.size() - 1 || values.contains(key))
            continue;
        values.insert(key, percentDecoded(piece.mid(sign + 1)));
    }
    return values;
}

// QUrl folds the scheme's case; a code is taken only as servers print it.
bool isHttpsUrl(const QString &text)
{
    return text.startsWith(u"https:"_s) && QUrl(text, QUrl::StrictMode).isValid();
}

} // namespace

std::optional<SyncLink> SyncLink::fromConfig(const AppConfig &config)
{
    if (config.syncServer.isEmpty() || config.syncToken.isEmpty() || config.syncPin.isEmpty())
        return std::nullopt;
    return SyncLink{.server = config.syncServer, .token = config.syncToken, .pin = config.syncPin.toLower()};
}

std::optional<SyncLink> SyncLink::fromText(const QString &text)
{
    constexpr qsizetype shortestToken = 16, pinLength = 64;
    const auto query = queryIn(text);
    if (!query)
        return std::nullopt;
    const auto values = valuesOf(*query);
    SyncLink link{values.value(u"server"_s), values.value(u"token"_s), values.value(u"pin"_s)};
    if (!isHttpsUrl(link.server) || characterCount(link.token) < shortestToken
        || characterCount(link.pin) != pinLength)
        return std::nullopt;
    if (link.server.endsWith(u'/'))
        link.server.chop(1);
    link.pin = link.pin.toLower();
    return link;
}

QString SyncLink::text() const
{
    return prefix + u"server="_s + percentEncoded(server) + u"&token="_s + percentEncoded(token) + u"&pin="_s
        + pin;
}

QString SyncLink::host() const
{
    const QString host = QUrl(server, QUrl::StrictMode).host();
    return host.isEmpty() ? server : host;
}

} // namespace nimbrelle
