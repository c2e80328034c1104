#pragma once

#include "platform/linux/ocr/GreyPicture.h"

namespace nimbrelle {

/// The strokes of bright letters with something dark beside them, an outline, a shadow or a box, in black on
/// white. They are told from the picture behind by their common colour, and by being thin.
GreyPicture subtitleStrokes(const Picture &picture);

} // namespace nimbrelle
