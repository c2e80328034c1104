#pragma once

#include "main/SelfTestOcr.h"

namespace nimbrelle::SelfTest {

/// Draws the sheet in the system's font. Needs a QGuiApplication; its offscreen platform will do.
TextSheet drawTextSheet();

} // namespace nimbrelle::SelfTest
