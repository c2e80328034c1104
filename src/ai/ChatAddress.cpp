#include "ai/ChatAddress.h"

#include "frame/Text.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

std::optional<QUrl> chatAddress(const QString &baseURL)
{
    const QString base = trimmedOf(trimmedBlanks(baseURL), u"/");
    const QUrl address(base + u"/chat/completions"_s, QUrl::StrictMode);
    if (!address.isValid() || address.scheme().isEmpty() || address.host().isEmpty())
        return std::nullopt;
    return address;
}

} // namespace nimbrelle
