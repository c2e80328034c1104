#include "server/SyncCode.h"

#include "server/Failure.h"

#include <qrencode.h>

#include <memory>

namespace nimbrelle::server {

namespace {

constexpr int quietZone = 4; // modules of margin that readers rely on
constexpr std::string_view darkOnLight = "\033[30;107m";
constexpr std::string_view reset = "\033[0m";

// What may stand in a query, less the three characters that separate its parts.
constexpr std::string_view unescaped = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                       "-._~!$'()*+,;:@/";

std::string percentEncoded(std::string_view text)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char character : text) {
        if (unescaped.find(character) != std::string_view::npos) {
            result += character;
            continue;
        }
        const auto value = static_cast<unsigned char>(character);
        result += '%';
        result += digits[value >> 4];
        result += digits[value & 15];
    }
    return result;
}

class Modules {
public:
    explicit Modules(std::string_view text)
        : m_code(QRcode_encodeString8bit(std::string(text).c_str(), 0, QR_ECLEVEL_M), &QRcode_free)
    {
        if (!m_code)
            throw Failure("the code is too long for a QR picture");
    }
    int width() const { return m_code->width + 2 * quietZone; }
    bool isDark(int x, int y) const
    {
        x -= quietZone;
        y -= quietZone;
        const int side = m_code->width;
        return x >= 0 && y >= 0 && x < side && y < side && (m_code->data[y * side + x] & 1) != 0;
    }

private:
    std::unique_ptr<QRcode, decltype(&QRcode_free)> m_code;
};

std::string_view halfBlocks(bool upper, bool lower)
{
    if (upper)
        return lower ? "█" : "▀";
    return lower ? "▄" : " ";
}

} // namespace

std::string SyncCode::text() const
{
    return "nimbrelle://sync?server=" + percentEncoded(server) + "&token=" + percentEncoded(token)
        + "&pin=" + pin;
}

std::string terminalQr(std::string_view text)
{
    const Modules modules(text);
    std::string picture;
    for (int y = 0; y < modules.width(); y += 2) {
        picture += darkOnLight;
        for (int x = 0; x < modules.width(); ++x)
            picture += halfBlocks(modules.isDark(x, y), modules.isDark(x, y + 1));
        picture += reset;
        picture += '\n';
    }
    return picture;
}

} // namespace nimbrelle::server
