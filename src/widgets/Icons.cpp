#include "widgets/Icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <QStringList>

#include <cmath>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

constexpr double grid = 24;
constexpr double strokeWidth = 1.9;
constexpr double disabledOpacity = 0.45;

/// Reads the calls of one layer off a list of words.
class LayerReader {
public:
    explicit LayerReader(const QStringList &words) : m_words(words) { }

    QPainterPath path()
    {
        QPainterPath path;
        path.setFillRule(Qt::WindingFill);
        while (m_next < m_words.size())
            call(m_words[m_next++], path);
        return path;
    }

private:
    double number() { return m_words[m_next++].toDouble(); }
    QPointF point()
    {
        const double x = number();
        return {x, number()};
    }

    void call(const QString &name, QPainterPath &path)
    {
        switch (name.front().unicode()) {
        case u'M':
            return path.moveTo(point());
        case u'L':
            return path.lineTo(point());
        case u'C': {
            const QPointF first = point();
            const QPointF second = point();
            return path.cubicTo(first, second, point());
        }
        case u'Z':
            return path.closeSubpath();
        case u'E': {
            const QPointF centre = point();
            const QPointF radii = point();
            return path.addEllipse(centre, radii.x(), radii.y());
        }
        case u'R': {
            const QPointF corner = point();
            const QPointF size = point();
            const double radius = number();
            return path.addRoundedRect(QRectF(corner, QSizeF(size.x(), size.y())), radius, radius);
        }
        case u'A':
            return arc(path);
        default:
            Q_UNREACHABLE();
        }
    }

    void arc(QPainterPath &path)
    {
        const QPointF centre = point();
        const double radius = number();
        const double start = number();
        const QRectF box(centre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius));
        path.arcMoveTo(box, start);
        path.arcTo(box, start, number());
    }

    const QStringList m_words;
    qsizetype m_next = 0;
};

void paintLayer(QPainter &painter, const QString &layer, const QColor &colour, const QColor &cut)
{
    QStringList words = layer.split(u' ', Qt::SkipEmptyParts);
    const QString manner = words.takeFirst();
    const bool cuts = manner.startsWith(u"cut"_s);
    const bool fills = manner.contains(u"fill"_s);
    const bool strokes = manner != u"fill"_s && manner != u"cut-fill"_s;
    painter.setCompositionMode(cuts && !cut.isValid() ? QPainter::CompositionMode_DestinationOut
                                                      : QPainter::CompositionMode_SourceOver);
    const QColor ink = cuts ? (cut.isValid() ? cut : QColor(Qt::black)) : colour;
    painter.setPen(
        strokes ? QPen(ink, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin) : QPen(Qt::NoPen));
    painter.setBrush(fills ? QBrush(ink) : QBrush(Qt::NoBrush));
    painter.drawPath(LayerReader(words).path());
}

QPixmap drawn(Icon icon, double size, double devicePixelRatio, const QColor &colour, const QColor &cut)
{
    const int pixels = static_cast<int>(std::ceil(size * devicePixelRatio));
    QPixmap pixmap(pixels, pixels);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / grid, size / grid);
    const QString drawing = QString::fromLatin1(iconDrawings[static_cast<std::size_t>(icon)]);
    for (const QString &layer : drawing.split(u';'))
        paintLayer(painter, layer, colour, cut);
    return pixmap;
}

// The toolkit keeps a copy of each picture that it paints, for as long as the cache has room: a card that
// drew its icons anew would leave them there.
template <class Draw> QPixmap kept(const QString &key, Draw draw)
{
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = draw();
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

QString keyOf(Icon icon, double size, double devicePixelRatio, const QColor &colour, const QColor &cut)
{
    return u"icon %1 %2 %3 %4 %5"_s.arg(static_cast<int>(icon))
        .arg(size)
        .arg(devicePixelRatio)
        .arg(colour.rgba(), 0, 16)
        .arg(cut.isValid() ? cut.rgba() : 0, 0, 16);
}

QPixmap paddedIcon(
    Icon icon, double size, double devicePixelRatio, const QColor &colour, const QMargins &padding)
{
    const QString room =
        u" %1 %2 %3 %4"_s.arg(padding.left()).arg(padding.top()).arg(padding.right()).arg(padding.bottom());
    return kept(keyOf(icon, size, devicePixelRatio, colour, {}) + room,
        [&] { return padded(iconPixmap(icon, size, devicePixelRatio, colour), padding); });
}

} // namespace

QPixmap iconPixmap(Icon icon, double size, double devicePixelRatio, const QColor &colour, const QColor &cut)
{
    return kept(keyOf(icon, size, devicePixelRatio, colour, cut),
        [&] { return drawn(icon, size, devicePixelRatio, colour, cut); });
}

QPixmap padded(const QPixmap &picture, const QMargins &padding)
{
    if (padding.isNull())
        return picture;
    const double ratio = picture.devicePixelRatio();
    QPixmap whole(
        picture.size() + QSize(padding.left() + padding.right(), padding.top() + padding.bottom()) * ratio);
    whole.setDevicePixelRatio(ratio);
    whole.fill(Qt::transparent);
    QPainter(&whole).drawPixmap(padding.left(), padding.top(), picture);
    return whole;
}

QIcon iconOf(Icon icon, double size, double devicePixelRatio, const QColor &colour, const QMargins &padding)
{
    QIcon made(paddedIcon(icon, size, devicePixelRatio, colour, padding));
    QColor faint = colour;
    faint.setAlphaF(static_cast<float>(disabledOpacity));
    made.addPixmap(paddedIcon(icon, size, devicePixelRatio, faint, padding), QIcon::Disabled);
    return made;
}

} // namespace nimbrelle
