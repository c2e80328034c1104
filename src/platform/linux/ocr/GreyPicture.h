#pragma once

#include "platform/Picture.h"
#include "platform/TextRecognizer.h"

#include <cstdint>
#include <vector>

namespace nimbrelle {

/// One byte of brightness for each pixel, rows from the top, no padding.
struct GreyPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

/// The picture as the engine reads it best: dark letters on a light ground, small ones enlarged. A plain one
/// is inverted when it is dark as a whole; of one with subtitles only the bright strokes are left, in black.
GreyPicture prepared(const Picture &picture, RecognitionStyle style);

/// How much a picture is enlarged for recognition: 2, or 1 when it is large or its pixels are small already.
int enlargement(const Picture &picture);

} // namespace nimbrelle
