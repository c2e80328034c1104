#pragma once

#include <QIcon>

namespace nimbrelle {

/// The application's icon, drawn when the first window asks for it.
QIcon windowIcon();

} // namespace nimbrelle
