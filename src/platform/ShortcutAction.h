#pragma once

namespace nimbrelle {

/// What a key of the desktop can ask the running program for.
enum class ShortcutAction { lookUpSelection, translateRegion };

} // namespace nimbrelle
