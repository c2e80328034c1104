#pragma once

class QString;

namespace nimbrelle {

/// Puts a text on the clipboard that the desktop's clipboard history should not keep.
void copySecret(const QString &text);

} // namespace nimbrelle
