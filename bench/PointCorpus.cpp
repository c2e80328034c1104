#include "PointCorpus.h"

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>

#include <cmath>

using namespace Qt::StringLiterals;

namespace nimbrelle::bench {
namespace {

constexpr int width = 760;
constexpr int height = 200;

const QString english =
    u"The engineers were forced to admit that the bridge had never been tested under such a load. Critics "
    "called the report a deliberate attempt to obscure the facts, and demanded that the council publish "
    "every letter. Nobody expected the mayor to resign, yet rumours about her health persisted for weeks. "
    "Meanwhile traffic was diverted through narrow streets, where residents complained about noise, dust "
    "and the constant smell of diesel. A compromise seemed unlikely until the insurers intervened. In the "
    "end the repairs cost twice what had been estimated, and the opening was postponed until spring."_s;

const QString chinese =
    u"记忆的规律告诉我们，单词需要在快要忘记的时候复习，这样才能记得更牢。昨天的会议讨论了下一季度的预算，大"
    u"家认为应该减少"
    "不必要的支出。请在设置中打开屏幕录制权限，然后重新启动程序。天气预报说明天有大雨，出门别忘了带伞。编译器"
    "在优化循环的时"
    "候会重新排列指令，因此调试时看到的顺序可能与源代码不同。这家餐厅的招牌菜是红烧排骨，价格合理，环境安静，适合家庭聚会。"_s;

struct Scheme {
    QColor ground;
    QColor ink;
};
const Scheme schemes[]{{Qt::white, {34, 34, 34}}, {{30, 31, 36}, {215, 218, 224}},
    {{253, 246, 227}, {88, 110, 117}}, {{240, 240, 240}, {0, 0, 0}}};

/// As programs show marked text: a ground and, where valid, an ink of its own.
const Scheme highlights[]{{{53, 132, 228}, Qt::white}, {{61, 174, 233}, Qt::white}, {{174, 207, 252}, {}},
    {{51, 153, 255}, Qt::white}, {{0, 120, 215}, {}}, {{255, 236, 139}, {}}};

QFont fontOf(const QString &family, int pixels)
{
    QFont font(family);
    font.setPixelSize(pixels);
    return font;
}

class Page {
public:
    explicit Page(const Scheme &scheme)
        : m_image(width, height, QImage::Format_RGB32), m_scheme(scheme), m_painter(&m_image)
    {
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.fillRect(m_image.rect(), scheme.ground);
        m_painter.setPen(scheme.ink);
    }

    QPainter &painter() { return m_painter; }

    /// From `top` to `bottom`; pieces are words, or characters where `blank` is none.
    void write(const QStringList &pieces, double blank, const QFont &font, double top, double bottom)
    {
        m_painter.setFont(font);
        const QFontMetricsF metrics(font);
        QPointF at(14, top + metrics.ascent());
        for (const QString &piece : pieces) {
            const double advance = metrics.horizontalAdvance(piece);
            if (at.x() + advance > width - 14)
                at = {14, at.y() + std::ceil(metrics.height() * 1.25)};
            if (at.y() + metrics.descent() > bottom)
                return;
            m_painter.drawText(at, piece);
            m_places.push_back({piece,
                {at.x(), at.y() - metrics.ascent(), advance, metrics.ascent() + metrics.descent()}, at});
            at.rx() += advance + blank;
        }
    }
    void writeEnglish(const QFont &font, int from, double top = 10, double bottom = height - 6)
    {
        write(english.split(u' ').mid(from), QFontMetricsF(font).horizontalAdvance(u' '), font, top, bottom);
    }
    void writeChinese(const QFont &font, int from, double top = 10, double bottom = height - 6)
    {
        write(chinese.mid(from).split(QString(), Qt::SkipEmptyParts), 0, font, top, bottom);
    }

    /// The word again, as a program shows it marked.
    void highlight(std::size_t index, const Scheme &look)
    {
        const Place &place = m_places.at(index);
        m_painter.fillRect(place.box.toAlignedRect(), look.ground);
        m_painter.setPen(look.ink.isValid() ? look.ink : m_scheme.ink);
        m_painter.drawText(place.baseline, place.text);
        m_painter.setPen(m_scheme.ink);
    }

    std::size_t count() const { return m_places.size(); }
    RestingPoint point(std::size_t index) const
    {
        const QPointF middle = m_places.at(index).box.center();
        return {.at = {middle.x() / width, 1 - middle.y() / height}, .word = m_places.at(index).text};
    }
    Scenery finished(std::vector<RestingPoint> points)
    {
        m_painter.end();
        Scenery made;
        made.picture = {.width = width,
            .height = height,
            .scale = 1,
            .pixels = QByteArray(reinterpret_cast<const char *>(m_image.constBits()), m_image.sizeInBytes())};
        made.points = std::move(points);
        for (const Place &place : m_places)
            made.english.append(place.text);
        return made;
    }

private:
    struct Place {
        QString text;
        QRectF box;
        QPointF baseline;
    };

    QImage m_image;
    Scheme m_scheme;
    QPainter m_painter;
    std::vector<Place> m_places;
};

/// Some of the page's words of two letters and more, apart from each other.
std::vector<std::size_t> someWords(const Page &page, std::size_t wanted, QRandomGenerator &random)
{
    std::vector<std::size_t> some;
    for (std::size_t i = 0; i < wanted; ++i) {
        const std::size_t first = page.count() * i / wanted;
        const std::size_t end = page.count() * (i + 1) / wanted;
        const std::size_t index = first + random.bounded(static_cast<quint32>(end - first));
        if (page.point(index).word.size() >= 2)
            some.push_back(index);
    }
    return some;
}

std::vector<Scenery> englishPages(bool isHighlighted)
{
    std::vector<Scenery> pages;
    QRandomGenerator random(isHighlighted ? 5 : 4);
    int page = 0;
    for (const char *family : {"DejaVu Sans", "Liberation Sans", "DejaVu Serif", "Liberation Serif", "Inter"})
        for (const int pixels : {12, 13, 14, 15, 16, 18, 20, 22}) {
            const Scheme &scheme = schemes[page % 4];
            Page drawn(scheme);
            drawn.writeEnglish(fontOf(QString::fromLatin1(family), pixels), page % 9);
            std::vector<RestingPoint> points;
            for (const std::size_t index : someWords(drawn, isHighlighted ? 1 : 5, random)) {
                points.push_back(drawn.point(index));
                const Scheme &look = highlights[page % 6];
                if (isHighlighted)
                    drawn.highlight(index, {look.ground, page % 4 == 1 ? QColor(Qt::white) : look.ink});
            }
            pages.push_back(drawn.finished(points));
            ++page;
        }
    return pages;
}

const char *const chineseFamilies[]{"Noto Sans CJK SC", "Noto Serif CJK SC", "WenQuanYi Micro Hei"};

std::vector<Scenery> chinesePages()
{
    std::vector<Scenery> pages;
    QRandomGenerator random(6);
    int page = 0;
    for (const char *family : chineseFamilies)
        for (const int pixels : {12, 13, 14, 16, 18, 20, 24}) {
            Page drawn(schemes[page % 4]);
            drawn.writeChinese(fontOf(QString::fromLatin1(family), pixels), 7 * (page % 5));
            std::vector<RestingPoint> points;
            for (std::size_t i = 0; i < 8; ++i)
                points.push_back(
                    {drawn.point(random.bounded(static_cast<quint32>(drawn.count()))).at, QString()});
            pages.push_back(drawn.finished(points));
            ++page;
        }
    return pages;
}

std::vector<Scenery> mixedPages()
{
    std::vector<Scenery> pages;
    QRandomGenerator random(8);
    int page = 0;
    for (const char *family : chineseFamilies)
        for (const int pixels : {13, 14, 16, 18}) {
            const QFont font = fontOf(QString::fromLatin1(family), pixels);
            const double line = std::ceil(QFontMetricsF(font).height() * 1.25);
            Page drawn(schemes[page % 4]);
            drawn.writeEnglish(fontOf(u"Liberation Sans"_s, pixels), page, 8 + 2 * line, 8 + 4 * line);
            std::vector<RestingPoint> points;
            for (const std::size_t index : someWords(drawn, 3, random))
                points.push_back(drawn.point(index));
            Scenery made;
            const QStringList words = drawn.finished({}).english;
            Page whole(schemes[page % 4]);
            whole.writeChinese(font, 5, 8, 8 + 2 * line);
            whole.writeChinese(font, 60, 8 + 4 * line, 8 + 6 * line);
            whole.writeEnglish(fontOf(u"Liberation Sans"_s, pixels), page, 8 + 2 * line, 8 + 4 * line);
            made = whole.finished(points);
            made.english = words;
            pages.push_back(made);
            ++page;
        }
    return pages;
}

void drawIcon(QPainter &painter, const QRectF &box, int kind, const QColor &ink)
{
    painter.setPen(QPen(ink, 1.6));
    painter.setBrush(Qt::NoBrush);
    const QPointF middle = box.center();
    const double r = box.width() / 2;
    switch (kind % 8) {
    case 0: // search
        painter.drawEllipse(middle - QPointF(2, 2), r * 0.6, r * 0.6);
        painter.drawLine(middle + QPointF(r * 0.3, r * 0.3), box.bottomRight());
        break;
    case 1: // menu
        for (const double y : {0.2, 0.5, 0.8})
            painter.drawLine(QPointF(box.left(), box.top() + y * box.height()),
                QPointF(box.right(), box.top() + y * box.height()));
        break;
    case 2: // copy
        painter.drawRect(box.adjusted(0, 0, -r * 0.5, -r * 0.5));
        painter.drawRect(box.adjusted(r * 0.5, r * 0.5, 0, 0));
        break;
    case 3: // back
        painter.drawLine(QPointF(box.left(), middle.y()), QPointF(box.right(), middle.y()));
        painter.drawLine(QPointF(box.left(), middle.y()), QPointF(middle.x(), box.top()));
        painter.drawLine(QPointF(box.left(), middle.y()), QPointF(middle.x(), box.bottom()));
        break;
    case 4: // letters: bold, as in an editor's bar
        painter.setBrush(ink);
        painter.drawPolygon(QPolygonF{box.bottomLeft(), QPointF(middle.x(), box.top()), box.bottomRight()});
        break;
    case 5: // reload
        painter.drawArc(box, 30 * 16, 300 * 16);
        painter.drawLine(box.topRight(), QPointF(box.right(), middle.y()));
        break;
    case 6: // folder
        painter.drawRect(box.adjusted(0, r * 0.5, 0, 0));
        painter.drawRect(QRectF(box.left(), box.top() + r * 0.2, r, r * 0.3));
        break;
    default: // settings
        painter.drawEllipse(middle, r * 0.35, r * 0.35);
        for (int i = 0; i < 8; ++i)
            painter.drawLine(middle + r * 0.6 * QPointF(std::cos(i * 0.785), std::sin(i * 0.785)),
                middle + r * QPointF(std::cos(i * 0.785), std::sin(i * 0.785)));
    }
}

std::vector<Scenery> toolbars()
{
    std::vector<Scenery> pages;
    for (int page = 0; page < 8; ++page) {
        const Scheme &scheme = schemes[page % 4];
        Page drawn(scheme);
        std::vector<RestingPoint> points;
        const int size = 14 + 2 * (page % 5);
        for (int i = 0; i < 16; ++i) {
            const QRectF box(20 + i * (size + 10 + page), 20 + 60 * (i % 2), size, size);
            drawIcon(drawn.painter(), box, i + page, scheme.ink);
            if (i % 2 == 0)
                points.push_back({{box.center().x() / width, 1 - box.center().y() / height}, QString()});
        }
        pages.push_back(drawn.finished(points));
    }
    return pages;
}

} // namespace

std::vector<Scenery> sceneries(Subject subject)
{
    switch (subject) {
    case Subject::english:
    case Subject::highlighted:
        return englishPages(subject == Subject::highlighted);
    case Subject::chinese:
        return chinesePages();
    case Subject::mixed:
        return mixedPages();
    case Subject::icons:
        break;
    }
    return toolbars();
}

} // namespace nimbrelle::bench
