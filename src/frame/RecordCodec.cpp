#include "frame/RecordCodec.h"

#include "frame/Text.h"

#include <cctype>

namespace nimbrelle::detail {

QString fromUtf8(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::optional<QUuid> uuidFrom(std::string_view text)
{
    constexpr std::size_t canonicalSize = 36;
    if (text.size() != canonicalSize)
        return std::nullopt;
    const QUuid id = QUuid::fromString(QLatin1StringView(text.data(), canonicalSize));
    if (id.isNull() && text != "00000000-0000-0000-0000-000000000000")
        return std::nullopt;
    return id;
}

std::string uuidText(const QUuid &id)
{
    return id.toByteArray(QUuid::WithoutBraces).toUpper().toStdString();
}

std::string camelCased(std::string_view key)
{
    const std::size_t from = key.find_first_not_of('_');
    if (from == std::string_view::npos)
        return std::string(key);
    const std::size_t to = key.find_last_not_of('_') + 1;
    const std::string_view words = key.substr(from, to - from);
    if (words.find('_') == std::string_view::npos)
        return std::string(key);

    std::string result(key.substr(0, from));
    bool isFirst = true, startsWord = false;
    for (const char c : words) {
        const auto letter = static_cast<unsigned char>(c);
        if (c == '_') {
            isFirst = false;
            startsWord = true;
            continue;
        }
        result += static_cast<char>(!isFirst && startsWord ? std::toupper(letter) : std::tolower(letter));
        startsWord = false;
    }
    return result.append(key.substr(to));
}

} // namespace nimbrelle::detail
