#include "main/CardRoad.h"

#include "main/Services.h"
#include "platform/linux/LinuxPlatform.h"

namespace nimbrelle {

CardRoad::CardRoad(Services &services, LinuxPlatform &platform, const Theme &theme)
    : m_source(platform.frontApplication, platform.accessibility)
    , m_selection(services.clock(), platform.accessibility, platform.primarySelection, platform.clipboard,
          platform.keySender, platform.pointer, platform.frontApplication)
    , m_ocr(platform.screens, platform.capture, platform.recogniser)
    , m_overlay(theme, [&platform] { return platform.screens.isComposited(); })
    , m_region(platform.screens, platform.pointer, platform.frontApplication, m_overlay)
    , m_panel(theme, {[&platform] { return platform.screens.isComposited(); }, &XConnection::flushToolkit})
    , m_card(services.clock(), services.config(), services.words(), services.newAI(), platform.screens,
          m_panel, [this] { return m_source.current(); })
    , m_view({theme, m_card, services.words(), platform.speaker})
    , m_trigger({services.clock(), services.config(), platform.input, platform.pointer,
          platform.frontApplication, platform.screens, platform.capture, platform.accessibility, m_selection,
          m_ocr, m_region, m_card})
{
    m_panel.setView(m_view);
}

} // namespace nimbrelle
