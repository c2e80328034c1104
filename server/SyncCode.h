#pragma once

#include <string>
#include <string_view>

namespace nimbrelle::server {

/// The one line that connects a device.
struct SyncCode {
    std::string server; ///< https://host:port
    std::string token;
    std::string pin; ///< 64 hexadecimal digits, lower case

    std::string text() const;
};

/// The code as a picture for a terminal: two modules a character, dark on light whatever the terminal's
/// colors. Throws Failure when the text is too long for any QR code.
std::string terminalQr(std::string_view text);

} // namespace nimbrelle::server
