#include "OcrCorpus.h"

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle::bench {
namespace {

constexpr int width = 760;
constexpr int height = 200;

const char *const prose =
    "I was reluctant to post this, but here we go. The update seems to have broken everything that I relied "
    "on: "
    "sync takes ages, half of my notes went missing and support keeps telling me to reinstall. Has anyone "
    "managed "
    "to roll back without losing data? If I remember correctly, version 4.2.1 still worked, although it "
    "crashed "
    "now and then. What puzzles me is why nobody noticed the flaw during testing; surely a release like this "
    "deserves more scrutiny. Anyway, I would appreciate any hint, however vague. Thanks for reading this "
    "far.";

const char *const columnText = "Most compilers inline small functions, yet the gain is easily overestimated. "
                               "Measure before you commit to "
                               "a rewrite, since intuition about caches is notoriously unreliable.";

const char *const interfaceText[] = {"File", "Edit", "Selection", "View", "Preferences", "Help",
    "Recent projects", "Unsaved changes", "Restore previous session", "Cancel", "Apply", "Downloads",
    "Notifications are muted", "Last synchronized yesterday", "Manage extensions", "Sign out"};

class Canvas {
public:
    Canvas(const QString &name, QColor ground, QColor ink)
        : m_image(width, height, QImage::Format_RGB32), m_ink(ink)
    {
        m_sheet.name = name;
        m_image.fill(ground);
    }

    /// Words in lines inside `area`, until it is full. Outlined ones as subtitles are drawn.
    void write(const QString &text, const QFont &font, const QRectF &area, bool isOutlined = false)
    {
        const QFontMetricsF metrics(font);
        QPointF at(area.left(), area.top() + metrics.ascent());
        for (const QString &word : text.split(u' ')) {
            const double advance = metrics.horizontalAdvance(word);
            if (at.x() + advance > area.right())
                at = {area.left(), at.y() + std::ceil(metrics.height() * 1.15)};
            if (at.y() + metrics.descent() > area.bottom())
                return;
            draw(word, font, at, isOutlined);
            m_sheet.words.push_back({word,
                QRectF(at.x(), at.y() - metrics.ascent(), advance, metrics.ascent() + metrics.descent())});
            at.rx() += advance + metrics.horizontalAdvance(u' ');
        }
    }

    void fill(const QRect &area, QColor colour) { QPainter(&m_image).fillRect(area, colour); }
    void setInk(QColor ink) { m_ink = ink; }

    /// A coarse picture of soft patches of all colours.
    void paintScene(quint32 seed)
    {
        QRandomGenerator random(seed);
        QImage coarse(19, 5, QImage::Format_RGB32);
        for (int y = 0; y < coarse.height(); ++y)
            for (int x = 0; x < coarse.width(); ++x)
                coarse.setPixel(x, y, qRgb(random.bounded(190), random.bounded(190), random.bounded(190)));
        m_image = coarse.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                      .convertToFormat(QImage::Format_RGB32);
    }

    Sheet finished(RecognitionStyle style = RecognitionStyle::plain)
    {
        m_sheet.style = style;
        m_sheet.picture = {width, height, 1,
            QByteArray(reinterpret_cast<const char *>(m_image.constBits()), m_image.sizeInBytes())};
        return m_sheet;
    }

private:
    void draw(const QString &word, const QFont &font, QPointF at, bool isOutlined)
    {
        QPainter painter(&m_image);
        painter.setRenderHint(QPainter::Antialiasing);
        if (isOutlined) {
            QPainterPath outline;
            outline.addText(at, font, word);
            painter.strokePath(outline, QPen(Qt::black, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.fillPath(outline, m_ink);
            return;
        }
        painter.setFont(font);
        painter.setPen(m_ink);
        painter.drawText(at, word);
    }

    Sheet m_sheet;
    QImage m_image;
    QColor m_ink;
};

QFont fontOf(const QString &family, int pixels, QFont::Weight weight = QFont::Normal)
{
    QFont font(family);
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

const QRectF page(12, 8, width - 24, height - 16);

void addProse(std::vector<Sheet> &sheets)
{
    for (const char *family : {"DejaVu Sans", "Liberation Sans", "DejaVu Serif", "Liberation Serif"})
        for (const int pixels : {9, 11, 13, 16, 20, 24}) {
            const QFont font = fontOf(QString::fromLatin1(family), pixels);
            const bool isDark = pixels % 3 == 1;
            Canvas canvas(u"%1 %2%3"_s.arg(QString::fromLatin1(family))
                              .arg(pixels)
                              .arg(isDark ? u" dark"_s : QString()),
                isDark ? QColor(30, 31, 36) : QColor(255, 255, 255),
                isDark ? QColor(215, 218, 224) : QColor(34, 34, 34));
            canvas.write(QString::fromLatin1(prose), font, page);
            sheets.push_back(canvas.finished());
        }
}

void addColumns(std::vector<Sheet> &sheets)
{
    for (const bool isSplit : {false, true}) { // one of them with a dark second column
        Canvas canvas(isSplit ? u"columns, light and dark"_s : u"columns"_s, Qt::white, QColor(40, 40, 40));
        const QFont font = fontOf(u"DejaVu Sans"_s, 13);
        canvas.write(QString::fromLatin1(columnText), font, {12, 10, 340, 180});
        if (isSplit) {
            canvas.fill({380, 0, 380, 200}, QColor(38, 40, 48));
            canvas.setInk(QColor(222, 222, 222));
        }
        canvas.write(QString::fromLatin1(columnText), font, {400, 10, 340, 180});
        sheets.push_back(canvas.finished());
    }
}

void addInterface(std::vector<Sheet> &sheets)
{
    for (const bool isDark : {false, true}) {
        Canvas canvas(isDark ? u"interface, dark"_s : u"interface"_s,
            isDark ? QColor(45, 45, 48) : QColor(240, 240, 240),
            isDark ? QColor(230, 230, 230) : QColor(20, 20, 20));
        int i = 0;
        for (const char *label : interfaceText) {
            canvas.write(QString::fromLatin1(label), fontOf(u"DejaVu Sans"_s, 12),
                QRectF(14 + 186 * (i % 4), 14 + 48 * (i / 4), 184, 30));
            ++i;
        }
        sheets.push_back(canvas.finished());
    }
}

void addSubtitles(std::vector<Sheet> &sheets)
{
    const char *const said[] = {"You never told me that the bridge had already collapsed.",
        "I thought we agreed to leave before the storm arrives.",
        "Whatever happens tonight, do not let them follow you.",
        "She has been reluctant to speak since the trial began.",
        "Honestly, I could not care less about the reward."};
    quint32 seed = 7;
    for (const char *text : said)
        for (const int pixels : {24, 30}) {
            Canvas canvas(u"subtitle %1"_s.arg(seed), Qt::black,
                seed % 3 == 0 ? QColor(255, 240, 120) : QColor(255, 255, 255));
            canvas.paintScene(seed++);
            canvas.write(QString::fromLatin1(text), fontOf(u"Liberation Sans"_s, pixels, QFont::DemiBold),
                {30, 90, 700, 100}, true);
            sheets.push_back(canvas.finished(RecognitionStyle::subtitles));
        }
}

bool holdsWord(const RecognizedLine &line, const DrawnWord &word)
{
    for (qsizetype at = line.text.indexOf(word.text); at >= 0; at = line.text.indexOf(word.text, at + 1)) {
        const qsizetype end = at + word.text.size();
        const bool isWhole = (at == 0 || line.text.at(at - 1) == u' ')
            && (end == line.text.size() || line.text.at(end) == u' ');
        const QRectF box = line.boxOf(at, word.text.size());
        const QPointF middle(box.center().x() * width, (1 - box.center().y()) * height);
        if (isWhole && word.box.contains(middle))
            return true;
    }
    return false;
}

} // namespace

std::vector<Sheet> ocrCorpus()
{
    std::vector<Sheet> sheets;
    addProse(sheets);
    addColumns(sheets);
    addInterface(sheets);
    addSubtitles(sheets);
    return sheets;
}

QStringList missedWords(const Sheet &sheet, const QList<RecognizedLine> &lines)
{
    QStringList missed;
    for (const DrawnWord &word : sheet.words)
        if (std::ranges::none_of(lines, [&](const RecognizedLine &line) { return holdsWord(line, word); }))
            missed.append(word.text);
    return missed;
}

} // namespace nimbrelle::bench
