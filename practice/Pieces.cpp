#include "practice/Pieces.h"

#include "practice/Text.h"

namespace nimbrelle::practice {

static constexpr size_t hanPerPiece = 3;

static bool isClosingMark(char32_t c)
{
    return std::u32string_view(U"，。；：、！？）」”,.;:!?").find(c) != std::u32string_view::npos;
}

static bool joinsWithLast(char32_t c)
{
    const bool combining = (c >= 0x300 && c <= 0x36F) || (c >= 0xFE00 && c <= 0xFE0F) || c == 0x200D;
    const bool skinTone = c >= 0x1F3FB && c <= 0x1F3FF;
    return combining || skinTone;
}

static bool endsPiece(std::u32string_view piece)
{
    const char32_t last = piece.back();
    if (std::u32string_view(U" \n，。；：、！？").find(last) != std::u32string_view::npos)
        return true;
    return isHan(last) && piece.size() >= hanPerPiece;
}

/// Han letters and English words do not share a piece; nor is anything cut behind a joiner.
static bool startsPiece(std::u32string_view piece, char32_t c)
{
    if (isClosingMark(c) || joinsWithLast(c) || piece.back() == 0x200D)
        return false;
    return endsPiece(piece) || isHan(c) != isHan(piece.back());
}

std::vector<std::string> piecesOf(std::string_view text)
{
    std::vector<std::string> pieces;
    std::u32string piece;
    for (const char32_t c : codePoints(text)) {
        if (!piece.empty() && startsPiece(piece, c)) {
            pieces.push_back(utf8(piece));
            piece.clear();
        }
        piece.push_back(c);
    }
    if (!piece.empty())
        pieces.push_back(utf8(piece));
    return pieces;
}

} // namespace nimbrelle::practice
