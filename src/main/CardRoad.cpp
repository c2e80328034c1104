#include "main/CardRoad.h"

#include "main/Services.h"
#include "platform/Platform.h"

namespace nimbrelle {

CardRoad::CardRoad(Services &services, const Platform &platform, const Theme &theme)
    : m_source(platform.frontApplication, platform.accessibility)
    , m_selection(services.clock(), services.config(), platform.accessibility, platform.primarySelection,
          platform.clipboard, platform.keySender, platform.pointer, platform.frontApplication,
          platform.windowAtPointer)
    , m_ocr(platform.screens, platform.windowAtPointer, platform.capture, platform.recognizer)
    , m_overlay(theme, platform.windowSystem)
    , m_region(platform.screens, platform.pointer, platform.frontApplication, m_overlay)
    , m_panel(theme, platform.windowSystem)
    , m_card(services.clock(), services.config(), services.words(), services.newAI(), platform.screens,
          m_panel, [this](std::stop_token stop) { return m_source.current(std::move(stop)); })
    , m_view({.theme = theme, .controller = m_card, .words = services.words(), .speaker = platform.speaker})
    , m_trigger({.clock = services.clock(),
          .config = services.config(),
          .input = platform.input,
          .pointer = platform.pointer,
          .keys = platform.keySender,
          .front = platform.frontApplication,
          .window = platform.windowAtPointer,
          .lock = platform.lock,
          .screens = platform.screens,
          .accessibility = platform.accessibility,
          .selection = m_selection,
          .ocr = m_ocr,
          .region = m_region,
          .card = m_card,
          .lookupIsLikely = [&services] { services.prepareAI(); }})
{
    m_panel.setView(m_view);
    if (!platform.input.hearsPresses()) {
        QObject::connect(&m_panel, &CardPanelWindow::pointerCame, &m_card, &CardController::pointerCame);
        QObject::connect(&m_panel, &CardPanelWindow::pointerLeft, &m_card, &CardController::pointerLeft);
    }
}

} // namespace nimbrelle
