#include "platform/linux/ocr/SubtitleStrokes.h"

#include "platform/linux/ocr/Planes.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace nimbrelle {
namespace {

constexpr int bright = 140; // the least brightness of a letter
constexpr int dark = 90; // and the most of what is beside it
constexpr double edgeReach = 3; // points from a stroke to its edge
constexpr double strokeReach = 5; // from its middle
constexpr double widestStroke = 13; // points
constexpr double widestGap = 1; // in an outline, to each side of its middle
constexpr int leastContrast = 110; // of a letter to what is beside it
constexpr int enclosedCore = 120; // the least likeness to the ink, beside pixels that are like a free core
constexpr int freeCore = 200;
constexpr double enclosedEdge = 2; // points from a core to the softest of its pixels
constexpr double freeEdge = 1;
constexpr double enclosedShare = 0.7; // then all letters are meant to be
constexpr double outlineReach = 2; // points
constexpr double outlinedShare = 0.85;
constexpr double lowestLetter = 0.7; // of the usual height
constexpr double enclosedInk = 1.0 / 6; // then the others are no ink
constexpr double pageShare = 0.5;
constexpr int sameColour = 14; // without grain
constexpr int mostGrain = 48;
constexpr int otherColour = 60; // beyond the same
constexpr int mixedColour = 130; // with what is dark

struct Colour {
    int blue;
    int green;
    int red;

    int distance(Colour other) const
    {
        return std::max(
            {std::abs(blue - other.blue), std::abs(green - other.green), std::abs(red - other.red)});
    }
    int brightness() const { return (29 * blue + 150 * green + 77 * red) >> 8; }
};

class Strokes {
public:
    explicit Strokes(const Picture &picture)
        : m_picture(picture), m_size{.width = picture.width, .height = picture.height}
    {
        m_brightness.reserve(count());
        for (std::size_t i = 0; i < count(); ++i)
            m_brightness.push_back(static_cast<std::uint8_t>(colour(i).brightness()));
    }

    GreyPicture find() const
    {
        GreyPicture grey{.width = m_size.width, .height = m_size.height, .pixels = Plane(count(), 255)};
        const Colour ink = commonestInk();
        const int same = std::clamp(sameColour + 3 * grain(), 0, mostGrain);
        const Plane likeness = likenessTo(ink, same, otherColour);
        if (isPage(likeness))
            return grey;
        const int ground = ink.brightness() - leastContrast;
        // What an outline or a box surrounds is told from the scenery by that alone, so its soft edges may
        // be taken along; what only has a shadow must be of another colour than the scenery.
        const Plane open = groundOf(above(m_brightness, ground));
        const Plane likely = above(likeness, 128);
        const Cores cores = coresIn(narrow(likeness), open, groundOf(likely), ground);
        const Plane soft = narrow(likenessTo(ink, same, mixedColour));
        const Plane atEnclosed = spread(cores.enclosed, m_size, points(enclosedEdge), most);
        const Plane atOpen = spread(cores.areEnclosed() ? outlined(cores, likely, ground) : cores.free,
            m_size, points(freeEdge), most);
        for (std::size_t i = 0; i < count(); ++i)
            if (open[i] != 0 ? atOpen[i] != 0 : atEnclosed[i] != 0)
                grey.pixels[i] = static_cast<std::uint8_t>(255 - soft[i]);
        return grey;
    }

private:
    /// The pixels that are certainly of a stroke.
    struct Cores {
        Plane enclosed; ///< by something dark
        Plane free;

        bool areEnclosed() const
        {
            const auto enclosedCount = std::ranges::count(enclosed, 1);
            return static_cast<double>(enclosedCount)
                > enclosedShare * static_cast<double>(enclosedCount + std::ranges::count(free, 1));
        }
    };

    Cores coresIn(const Plane &strokes, const Plane &open, const Plane &scenery, int ground) const
    {
        const Plane darkest = spread(m_brightness, m_size, points(strokeReach), least);
        Cores cores{.enclosed = Plane(count()), .free = Plane(count())};
        Plane faint(count());
        for (std::size_t i = 0; i < count(); ++i) {
            if (darkest[i] > ground)
                continue;
            if (open[i] != 0) {
                cores.free[i] = strokes[i] >= freeCore && scenery[i] == 0 ? 1 : 0;
            } else {
                cores.enclosed[i] = strokes[i] >= freeCore ? 1 : 0;
                faint[i] = strokes[i] >= enclosedCore ? 1 : 0;
            }
        }
        cores.enclosed = grown(std::move(cores.enclosed), faint, m_size); // what is faint all over is scenery
        return cores;
    }

    /// Those of the free cores that are letters whose outline has a gap: their piece of `area` has something
    /// dark beside nearly all of its edge, and is as high as the enclosed ones. What is left between two
    /// outlines is lower.
    Plane outlined(const Cores &cores, const Plane &area, int ground) const
    {
        const Plane darkest = spread(m_brightness, m_size, points(outlineReach), least);
        std::vector<std::size_t> heights;
        for (const Piece &piece : piecesAt(cores.enclosed, area, m_size))
            heights.insert(heights.end(), piece.size(), heightOf(piece, m_size));
        Plane found(count());
        if (heights.empty())
            return found;
        const auto middle = heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / 2);
        std::ranges::nth_element(heights, middle);
        const double lowest = lowestLetter * static_cast<double>(*middle);
        for (const Piece &piece : piecesAt(cores.free, area, m_size))
            if (static_cast<double>(heightOf(piece, m_size)) >= lowest
                && isOutlined(piece, area, darkest, ground))
                for (const std::size_t i : piece)
                    found[i] = cores.free[i];
        return found;
    }

    bool isOutlined(const Piece &piece, const Plane &area, const Plane &darkest, int ground) const
    {
        std::size_t edge = 0;
        std::size_t beside = 0;
        for (const std::size_t i : piece)
            if (isEdge(i, area, m_size)) {
                ++edge;
                beside += darkest[i] <= ground ? 1 : 0;
            }
        return static_cast<double>(beside) > outlinedShare * static_cast<double>(edge);
    }

    /// Of a page with dark text the "ink" is the paper, and its strokes are what letters enclose.
    bool isPage(const Plane &likeness) const
    {
        return static_cast<double>(std::ranges::count(likeness, 255))
            > pageShare * static_cast<double>(count());
    }

    int points(double length) const { return static_cast<int>(length * m_picture.scale); }
    std::size_t count() const { return m_size.count(); }
    Colour colour(std::size_t i) const
    {
        const auto *pixel = reinterpret_cast<const std::uint8_t *>(m_picture.pixels.constData()) + 4 * i;
        return {.blue = pixel[0], .green = pixel[1], .red = pixel[2]};
    }

    Plane likenessTo(Colour ink, int same, int other) const
    {
        Plane likeness(count());
        for (std::size_t i = 0; i < count(); ++i) {
            const int away = std::clamp(colour(i).distance(ink) - same, 0, other);
            likeness[i] = static_cast<std::uint8_t>(255 - 255 * away / other);
        }
        return likeness;
    }

    /// The usual difference between neighbours.
    int grain() const
    {
        std::array<std::size_t, 256> counts{};
        for (std::size_t i = 1; i < count(); ++i)
            ++counts[static_cast<std::size_t>(std::abs(m_brightness[i] - m_brightness[i - 1]))];
        std::size_t below = 0;
        int middle = 0;
        while (middle < 255 && (below += counts[static_cast<std::size_t>(middle)]) * 2 < count())
            ++middle;
        return middle;
    }

    /// What of it is thinner than the widest stroke.
    Plane narrow(const Plane &plane) const
    {
        const int half = points(widestStroke) / 2;
        Plane thin = spread(spread(plane, m_size, half, least), m_size, half, most);
        for (std::size_t i = 0; i < count(); ++i)
            thin[i] = static_cast<std::uint8_t>(plane[i] - std::min(plane[i], thin[i]));
        return thin;
    }

    Plane above(const Plane &plane, int level) const
    {
        Plane is(count());
        std::ranges::transform(plane, is.begin(), [level](int each) { return each > level ? 1 : 0; });
        return is;
    }

    /// What of `area` is in one piece with what in it is wider than a stroke.
    Plane groundOf(const Plane &area) const { return grown(wideOf(area), area, m_size); }

    /// The same, but what is joined to it by a narrow gap alone stays out, for outlines have gaps.
    Plane groundOutside(const Plane &area) const
    {
        const int gap = points(widestGap);
        Plane outside =
            spread(grown(wideOf(area), spread(area, m_size, gap, least), m_size), m_size, gap, most);
        std::ranges::transform(outside, area, outside.begin(), least);
        return outside;
    }

    Plane wideOf(const Plane &area) const
    {
        const int half = points(widestStroke) / 2;
        return spread(spread(area, m_size, half, least), m_size, half, most);
    }

    Colour commonestInk() const
    {
        const std::vector<Colour> candidates = maybeInk();
        return meanNear(commonestOf(candidates), candidates);
    }

    /// The bright pixels beside dark ones; of those that something dark surrounds, where there are enough.
    std::vector<Colour> maybeInk() const
    {
        const Plane darkest = spread(m_brightness, m_size, points(edgeReach), least);
        const Plane open = groundOutside(above(m_brightness, dark));
        std::vector<Colour> enclosed;
        std::vector<Colour> all;
        for (std::size_t i = 0; i < count(); ++i)
            if (m_brightness[i] >= bright && darkest[i] <= dark) {
                all.push_back(colour(i));
                if (open[i] == 0)
                    enclosed.push_back(all.back());
            }
        return static_cast<double>(enclosed.size()) > enclosedInk * static_cast<double>(all.size())
            ? enclosed
            : all; // they only have a shadow
    }

    /// Where in the cube of colours most of them lie; those of the scenery are of many colours.
    static Colour commonestOf(const std::vector<Colour> &candidates)
    {
        constexpr int cells = 16; // for each of the three
        std::vector<int> counts(std::size_t{cells} * cells * cells);
        const auto cell = [](int b, int g, int r) {
            return static_cast<std::size_t>((b * cells + g) * cells + r);
        };
        for (const Colour &each : candidates)
            ++counts[cell(each.blue / cells, each.green / cells, each.red / cells)];
        const auto inEight = [&](Colour corner) { // cells together, for a colour may lie on a border
            int sum = 0;
            for (const int next : {0, 1, 2, 3, 4, 5, 6, 7})
                sum += counts[cell(
                    corner.blue + (next & 1), corner.green + (next >> 1 & 1), corner.red + (next >> 2))];
            return sum;
        };
        Colour best{};
        int most = -1;
        constexpr int corners = cells - 1;
        for (int i = 0; i < corners * corners * corners; ++i) {
            const Colour corner{
                .blue = i / (corners * corners), .green = i / corners % corners, .red = i % corners};
            if (const int sum = inEight(corner); sum > most) {
                most = sum;
                best = corner;
            }
        }
        return {.blue = (best.blue + 1) * cells,
            .green = (best.green + 1) * cells,
            .red = (best.red + 1) * cells};
    }

    static Colour meanNear(Colour about, const std::vector<Colour> &candidates)
    {
        qint64 all = 0;
        qint64 blue = 0;
        qint64 green = 0;
        qint64 red = 0;
        for (const Colour &each : candidates)
            if (each.distance(about) <= 16) {
                blue += each.blue;
                green += each.green;
                red += each.red;
                ++all;
            }
        all = std::max<qint64>(all, 1);
        return {.blue = static_cast<int>(blue / all),
            .green = static_cast<int>(green / all),
            .red = static_cast<int>(red / all)};
    }

    const Picture &m_picture;
    const PlaneSize m_size;
    Plane m_brightness;
};

} // namespace

GreyPicture subtitleStrokes(const Picture &picture)
{
    return Strokes(picture).find();
}

} // namespace nimbrelle
