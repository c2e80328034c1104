#include "shell/views/FollowDesktop.h"

#include "platform/DesktopAppearance.h"
#include "widgets/Theme.h"

namespace nimbrelle {

void followDesktop(Theme &theme, const DesktopAppearance &appearance)
{
    const auto take = [&theme, &appearance] {
        const Appearance current = appearance.current();
        theme.setScheme(current.isDark ? Theme::Scheme::dark : Theme::Scheme::light);
        theme.setStill(current.isStill);
    };
    QObject::connect(&appearance, &DesktopAppearance::changed, &theme, take);
    take();
}

} // namespace nimbrelle
