#include "platform/linux/ocr/SubtitleStrokes.h"

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
constexpr int leastContrast = 110; // of a letter to what is beside it
constexpr int enclosedCore = 120; // the least likeness to the ink
constexpr int freeCore = 200;
constexpr double enclosedEdge = 2; // points from a core to the softest of its pixels
constexpr double freeEdge = 1;
constexpr double enclosedShare = 0.8; // then all letters are meant to be
constexpr double enclosedInk = 1.0 / 6; // then the others are no ink
constexpr double pageShare = 0.5;
constexpr int sameColour = 14; // without grain
constexpr int mostGrain = 48;
constexpr int otherColour = 60; // beyond the same
constexpr int mixedColour = 130; // with what is dark

using Plane = std::vector<std::uint8_t>;

struct Size {
    int width;
    int height;

    std::size_t at(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

std::uint8_t least(std::uint8_t a, std::uint8_t b)
{
    return a < b ? a : b;
}

std::uint8_t most(std::uint8_t a, std::uint8_t b)
{
    return a > b ? a : b;
}

/// Each pixel becomes what `pick` chooses of those up to `reach` off, sidewards and up and down.
template <class Pick> Plane spread(const Plane &from, Size size, int reach, Pick pick)
{
    Plane across = from;
    for (int y = 0; y < size.height; ++y) {
        const std::uint8_t *row = from.data() + size.at(0, y);
        std::uint8_t *to = across.data() + size.at(0, y);
        for (int step = 1; step <= std::min(reach, size.width - 1); ++step) {
            for (int x = step; x < size.width; ++x)
                to[x] = pick(to[x], row[x - step]);
            for (int x = 0; x < size.width - step; ++x)
                to[x] = pick(to[x], row[x + step]);
        }
    }
    Plane both = across;
    for (int y = 0; y < size.height; ++y)
        for (int other = std::max(y - reach, 0); other <= std::min(y + reach, size.height - 1); ++other) {
            const std::uint8_t *row = across.data() + size.at(0, other);
            std::uint8_t *to = both.data() + size.at(0, y);
            for (int x = 0; x < size.width; ++x)
                to[x] = pick(to[x], row[x]);
        }
    return both;
}

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
        const Cores cores = coresIn(narrow(likeness), open, groundOf(above(likeness, 128)), ground);
        const Plane soft = narrow(likenessTo(ink, same, mixedColour));
        const Plane atEnclosed = spread(cores.enclosed, m_size, points(enclosedEdge), most);
        const Plane atFree = spread(cores.free, m_size, points(freeEdge), most);
        const bool hasFree = !cores.areEnclosed();
        for (std::size_t i = 0; i < count(); ++i)
            if (open[i] != 0 ? hasFree && atFree[i] != 0 : atEnclosed[i] != 0)
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
        for (std::size_t i = 0; i < count(); ++i) {
            if (darkest[i] > ground)
                continue;
            if (open[i] == 0)
                cores.enclosed[i] = strokes[i] >= enclosedCore ? 1 : 0;
            else
                cores.free[i] = strokes[i] >= freeCore && scenery[i] == 0 ? 1 : 0;
        }
        return cores;
    }

    /// Of a page with dark text the "ink" is the paper, and its strokes are what letters enclose.
    bool isPage(const Plane &likeness) const
    {
        return static_cast<double>(std::ranges::count(likeness, 255))
            > pageShare * static_cast<double>(count());
    }

    int points(double length) const { return static_cast<int>(length * m_picture.scale); }
    std::size_t count() const { return m_size.at(0, m_size.height); }
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
    Plane groundOf(const Plane &area) const
    {
        const int half = points(widestStroke) / 2;
        return grown(spread(spread(area, m_size, half, least), m_size, half, most), area);
    }

    /// `from` and all of `area` that touches it sidewards or up and down, on and on.
    Plane grown(Plane from, const Plane &area) const
    {
        std::vector<std::size_t> next;
        for (std::size_t i = 0; i < count(); ++i)
            if (from[i] != 0)
                next.push_back(i);
        const auto visit = [&](std::size_t i) {
            if (area[i] != 0 && from[i] == 0) {
                from[i] = 1;
                next.push_back(i);
            }
        };
        const auto width = static_cast<std::size_t>(m_size.width);
        while (!next.empty()) {
            const std::size_t i = next.back();
            next.pop_back();
            if (i % width > 0)
                visit(i - 1);
            if (i % width + 1 < width)
                visit(i + 1);
            if (i >= width)
                visit(i - width);
            if (i + width < count())
                visit(i + width);
        }
        return from;
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
        const Plane open = groundOf(above(m_brightness, dark));
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
    const Size m_size;
    Plane m_brightness;
};

} // namespace

GreyPicture subtitleStrokes(const Picture &picture)
{
    return Strokes(picture).find();
}

} // namespace nimbrelle
