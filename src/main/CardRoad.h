#pragma once

#include "card/CardController.h"
#include "card/views/CardPanelWindow.h"
#include "card/views/CardView.h"
#include "screen/RegionSelector.h"
#include "screen/ScreenOCR.h"
#include "screen/SelectionReader.h"
#include "screen/SourceInfo.h"
#include "screen/TriggerController.h"
#include "screen/views/RegionOverlayWindow.h"

namespace nimbrelle {

class Services;
struct Platform;

/// The way from the mouse to the card, tied together: what watches, what reads, and what shows.
class CardRoad {
public:
    CardRoad(Services &services, const Platform &platform, const Theme &theme);

    CardController &card() { return m_card; }
    void startWatching() { m_trigger.start(); }
    void perform(ShortcutAction action) { m_trigger.perform(action); }

private:
    SourceInfo m_source;
    SelectionReader m_selection;
    ScreenOCR m_ocr;
    RegionOverlayWindow m_overlay;
    RegionSelector m_region;
    CardPanelWindow m_panel;
    CardController m_card;
    CardView m_view;
    TriggerController m_trigger;
};

} // namespace nimbrelle
