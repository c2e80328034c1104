#include "platform/linux/ocr/Underlines.h"

#include <algorithm>
#include <cstdlib>

namespace nimbrelle {
namespace {

constexpr double leastLength = 26; // points; the strokes of letters and of most icons are shorter
constexpr double mostThickness = 2;
constexpr double letterFrom = 2; // points above the line
constexpr double letterTo = 8;
constexpr int darkest = 220; // lighter rows are no line
constexpr int evenness = 8; // of the brightness along a line
constexpr int contrast = 40; // to the ground above and below
constexpr double freeShare = 0.6; // of a line's length that no letter touches
constexpr double letterShare = 0.2; // and that has letters above it

/// Pixels of one row; `right` is the first that is not in it.
struct Run {
    int left;
    int right;

    int length() const { return right - left; }
};

class Underlines {
public:
    Underlines(GreyPicture &grey, double scale) : m_grey(grey), m_scale(scale) { }

    void remove()
    {
        for (int y = 1; y < m_grey.height; ++y)
            for (int x = 0; x < m_grey.width;) {
                const Run run = runAt(x, y);
                if (run.length() >= points(leastLength) && !isLine(run, y - 1))
                    removeAt(run, y);
                x = run.right;
            }
    }

private:
    int points(double count) const { return static_cast<int>(count * m_scale); }

    std::uint8_t &at(int x, int y)
    {
        return m_grey.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_grey.width)
            + static_cast<std::size_t>(x)];
    }

    Run runAt(int x, int y)
    {
        const int first = at(x, y);
        Run run{.left = x, .right = x + 1};
        while (first <= darkest && run.right < m_grey.width && std::abs(at(run.right, y) - first) <= evenness)
            ++run.right;
        return run;
    }

    /// Whether that row of it is mostly of one dark brightness.
    bool isLine(const Run &run, int y)
    {
        const int middle = at((run.left + run.right) / 2, y);
        return middle <= darkest
            && share(run, [&](int x) { return std::abs(at(x, y) - middle) <= evenness; }) > freeShare;
    }

    template <class Is> double share(const Run &run, Is is)
    {
        int count = 0;
        for (int x = run.left; x < run.right; ++x)
            count += is(x) ? 1 : 0;
        return static_cast<double>(count) / run.length();
    }

    void removeAt(const Run &run, int top)
    {
        int end = top + 1;
        while (end < m_grey.height && end - top <= points(mostThickness) + 1 && isLine(run, end))
            ++end;
        if (end - top > points(mostThickness) + 1 || end >= m_grey.height)
            return;
        int dark = 255;
        for (int y = top; y < end; ++y)
            dark = std::min<int>(dark, at((run.left + run.right) / 2, y));
        const auto isGround = [&](int x, int y) { return at(x, y) >= dark + contrast; };
        if (share(run, [&](int x) { return isGround(x, top - 1); }) < freeShare
            || share(run, [&](int x) { return isGround(x, end); }) < freeShare
            || share(run, [&](int x) { return hasLetterAbove(x, top, dark); }) < letterShare)
            return;
        for (int x = run.left; x < run.right; ++x)
            for (int y = top; y < end && isGround(x, top - 1); ++y)
                at(x, y) = at(x, top - 1);
    }

    bool hasLetterAbove(int x, int top, int dark)
    {
        for (int y = std::max(top - points(letterTo), 0); y < top - points(letterFrom); ++y)
            if (at(x, y) < dark + contrast)
                return true;
        return false;
    }

    GreyPicture &m_grey;
    const double m_scale;
};

} // namespace

void removeUnderlines(GreyPicture &grey, double scale)
{
    Underlines(grey, scale).remove();
}

} // namespace nimbrelle
