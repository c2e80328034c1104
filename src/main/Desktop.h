#pragma once

#include "card/CardController.h"
#include "card/views/CardPanelWindow.h"
#include "card/views/CardView.h"
#include "main/Services.h"
#include "platform/linux/LinuxPlatform.h"
#include "screen/RegionSelector.h"
#include "screen/ScreenOCR.h"
#include "screen/SelectionReader.h"
#include "screen/SourceInfo.h"
#include "screen/TriggerController.h"
#include "screen/views/RegionOverlayWindow.h"
#include "shell/views/Theme.h"

namespace nimbrelle {

/// The program as it runs in a session: the desktop's services, the road from the mouse to the card, and what
/// the card leads to, tied together. Made once the application object stands, and dies before it.
class Desktop {
public:
    explicit Desktop(Services &services);

    /// Watches from now on.
    void start();

private:
    LinuxPlatform m_platform;
    Theme m_theme{Theme::desktopScale()};
    SourceInfo m_source{m_platform.frontApplication, m_platform.accessibility};
    SelectionReader m_selection;
    ScreenOCR m_ocr{m_platform.screens, m_platform.capture, m_platform.recogniser};
    RegionOverlayWindow m_overlay;
    RegionSelector m_region{m_platform.screens, m_platform.pointer, m_platform.frontApplication, m_overlay};
    CardPanelWindow m_panel;
    CardController m_card;
    CardView m_cardView;
    TriggerController m_trigger;
};

} // namespace nimbrelle
