#include "notebook/PageSource.h"

#include <QStringList>
#include <QUrl>

namespace nimbrelle {

using namespace Qt::StringLiterals;

std::optional<QString> hostOf(const std::optional<QString> &url)
{
    const QUrl address(url.value_or(QString()));
    if (address.isEmpty() || !address.isValid())
        return std::nullopt;
    if (address.isLocalFile()) {
        const QStringList parts = address.path(QUrl::FullyDecoded).split(u'/', Qt::SkipEmptyParts);
        return parts.isEmpty() ? std::nullopt : std::optional(parts.last());
    }
    QString host = address.host();
    if (host.startsWith(u"www."_s))
        host.remove(0, 4);
    return host.isEmpty() ? std::nullopt : std::optional(host);
}

std::optional<QString> PageSource::host() const
{
    return hostOf(url);
}

std::optional<QString> PageSource::sourceKey() const
{
    const auto found = host();
    return found ? found : app;
}

QString sourceLine(const PageSource &source, bool showTitle)
{
    QStringList parts;
    for (const auto &part : {source.app, source.host(), showTitle ? source.title : std::nullopt})
        if (part && !part->isEmpty())
            parts.append(*part);
    return parts.isEmpty() ? QString() : u"来自 "_s + parts.join(u" · "_s);
}

} // namespace nimbrelle
