#pragma once

namespace nimbrelle {

class DesktopAppearance;
class Theme;

/// The theme looks as the desktop asks, now and after each change, for as long as both live.
void followDesktop(Theme &theme, const DesktopAppearance &appearance);

} // namespace nimbrelle
