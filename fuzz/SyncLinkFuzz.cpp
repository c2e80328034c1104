#include "frame/Text.h"
#include "sync/SyncLink.h"
#include "sync/SyncProtocol.h"

#include <cstdlib>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

// A link that was read says itself again, but for a second slash at the end of its server.
void readLink(const QString &text)
{
    const auto link = SyncLink::fromText(text);
    if (!link)
        return;
    if (characterCount(link->token) < 16 || !link->server.startsWith(u"https:"_s))
        std::abort();
    SyncLink again = *link;
    while (again.server.endsWith(u'/'))
        again.server.chop(1);
    const auto read = SyncLink::fromText(again.text());
    if (read && read != again)
        std::abort();
    link->host();
}

} // namespace

/// The same bytes as pasted text and as an ETag.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    readLink(QString::fromUtf8(bytes));
    const qint64 version = SyncProtocol::versionOf(bytes);
    if (version != 0 && SyncProtocol::versionOf('"' + QByteArray::number(version) + '"') != version)
        std::abort();
    return 0;
}
