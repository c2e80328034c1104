#include "main/Desktop.h"

namespace nimbrelle {

Desktop::Desktop(Services &services)
    : m_selection(services.clock(), m_platform.accessibility, m_platform.primarySelection,
        m_platform.clipboard, m_platform.keySender, m_platform.pointer, m_platform.frontApplication)
    , m_overlay(m_theme, [this] { return m_platform.screens.isComposited(); })
    , m_panel(m_theme, {[this] { return m_platform.screens.isComposited(); }, &XConnection::flushToolkit})
    , m_card(services.clock(), services.config(), services.words(), services.newAI(), m_platform.screens,
          m_panel, [this] { return m_source.current(); })
    , m_cardView({m_theme, m_card, services.words(), m_platform.speaker})
    , m_trigger({services.clock(), services.config(), m_platform.input, m_platform.pointer,
          m_platform.frontApplication, m_platform.screens, m_platform.capture, m_platform.accessibility,
          m_selection, m_ocr, m_region, m_card})
{
    m_theme.applyToApplication();
    m_panel.setView(m_cardView);
}

void Desktop::start()
{
    m_trigger.start();
}

} // namespace nimbrelle
