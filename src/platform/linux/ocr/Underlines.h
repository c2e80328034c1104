#pragma once

#include "platform/linux/ocr/GreyPicture.h"

namespace nimbrelle {

/// Takes the lines away that are drawn below words, as below links: the engine believes in none of such
/// words. Of dark letters on a light ground; `scale` is in pixels for each point. What letters reach across a
/// line stays, and so does a dash, which has no letters above it.
void removeUnderlines(GreyPicture &grey, double scale);

} // namespace nimbrelle
