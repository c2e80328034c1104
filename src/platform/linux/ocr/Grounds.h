#pragma once

#include "platform/linux/ocr/GreyPicture.h"

#include <QRect>

#include <vector>

namespace nimbrelle {

/// Blocks of one even colour that differs from the picture's commonest, as programs lay under marked text,
/// and under buttons: the round of each, and its colour as it stands in the picture.
struct Ground {
    QRect box;
    quint32 colour;
};
std::vector<Ground> groundsIn(const Picture &picture);

/// Writes a block into `grey` as black letters on white, whatever its two colours were.
void levelGround(const Picture &picture, const Ground &ground, GreyPicture &grey);

} // namespace nimbrelle
