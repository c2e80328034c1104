#include "OcrCorpus.h"

#include <QBuffer>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <span>

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

enum class Scene {
    dim, ///< soft patches of dark and middling colours
    soft, ///< of all colours
    bright,
    busy, ///< things with edges before soft patches
};

enum class Edge { none, outline, thinOutline, shadow, box };

class Canvas {
public:
    Canvas(const QString &name, QColor ground, QColor ink)
        : m_image(width, height, QImage::Format_RGB32), m_ink(ink)
    {
        m_sheet.name = name;
        m_image.fill(ground);
    }

    /// Words in lines inside `area`, until it is full.
    void write(const QString &text, const QFont &font, const QRectF &area, Edge edge = Edge::none)
    {
        const QFontMetricsF metrics(font);
        QPointF at(area.left(), area.top() + metrics.ascent());
        for (const QString &word : text.split(u' ')) {
            const double advance = metrics.horizontalAdvance(word);
            if (at.x() + advance > area.right())
                at = {area.left(), at.y() + std::ceil(metrics.height() * 1.15)};
            if (at.y() + metrics.descent() > area.bottom())
                return;
            draw(word, font, at, edge);
            m_sheet.words.push_back({word,
                QRectF(at.x(), at.y() - metrics.ascent(), advance, metrics.ascent() + metrics.descent())});
            at.rx() += advance + metrics.horizontalAdvance(u' ');
        }
    }

    void fill(const QRect &area, QColor colour) { QPainter(&m_image).fillRect(area, colour); }
    void setInk(QColor ink) { m_ink = ink; }

    void paintScene(Scene scene, int grain, quint32 seed)
    {
        QRandomGenerator random(seed);
        const int darkest = scene == Scene::bright ? 130 : 0;
        const int brightest = scene == Scene::dim ? 190 : 256;
        const auto colour = [&] {
            return QColor(random.bounded(darkest, brightest), random.bounded(darkest, brightest),
                random.bounded(darkest, brightest));
        };
        QImage coarse(19, 5, QImage::Format_RGB32);
        for (int y = 0; y < coarse.height(); ++y)
            for (int x = 0; x < coarse.width(); ++x)
                coarse.setPixelColor(x, y, colour());
        m_image = coarse.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                      .convertToFormat(QImage::Format_RGB32);
        if (scene == Scene::busy)
            scatter(random, colour);
        for (int y = 0; y < height && grain > 0; ++y)
            for (int x = 0; x < width; ++x) {
                const int change = random.bounded(2 * grain + 1) - grain;
                const QColor old = m_image.pixelColor(x, y);
                m_image.setPixelColor(x, y,
                    QColor(std::clamp(old.red() + change, 0, 255), std::clamp(old.green() + change, 0, 255),
                        std::clamp(old.blue() + change, 0, 255)));
            }
    }

    /// As films are, which loses the sharpness of letters.
    void compress(int quality)
    {
        QBuffer file;
        file.open(QBuffer::ReadWrite);
        m_image.save(&file, "JPEG", quality);
        m_image = QImage::fromData(file.data(), "JPEG").convertToFormat(QImage::Format_RGB32);
    }

    Sheet finished(RecognitionStyle style = RecognitionStyle::plain)
    {
        m_sheet.style = style;
        m_sheet.picture = {width, height, 1,
            QByteArray(reinterpret_cast<const char *>(m_image.constBits()), m_image.sizeInBytes())};
        return m_sheet;
    }

private:
    /// Things with edges: boards, people, branches.
    template <class Colour> void scatter(QRandomGenerator &random, Colour colour)
    {
        QPainter painter(&m_image);
        painter.setRenderHint(QPainter::Antialiasing);
        for (int i = 0; i < 60; ++i) {
            const QPoint at(random.bounded(width), random.bounded(height));
            const QPoint size(random.bounded(10, 160), random.bounded(6, 90));
            painter.setPen(Qt::NoPen);
            painter.setBrush(colour());
            if (i % 3 == 0)
                painter.drawRect(QRect(at, at + size));
            else if (i % 3 == 1)
                painter.drawEllipse(QRect(at, at + size));
            painter.setPen(QPen(colour(), random.bounded(1, 6)));
            if (i % 3 == 2)
                painter.drawLine(at, at + size);
        }
    }

    void draw(const QString &word, const QFont &font, QPointF at, Edge edge)
    {
        QPainter painter(&m_image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setFont(font);
        const auto outline = [&](double thickness) {
            QPainterPath path;
            path.addText(at, font, word);
            painter.strokePath(path, QPen(Qt::black, thickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        };
        const QFontMetricsF metrics(font);
        switch (edge) {
        case Edge::none:
            break;
        case Edge::outline:
            outline(4);
            break;
        case Edge::thinOutline:
            outline(2);
            break;
        case Edge::shadow:
            painter.setPen(QColor(0, 0, 0, 220));
            painter.drawText(at + QPointF(1, 1), word);
            painter.drawText(at + QPointF(2, 2), word);
            break;
        case Edge::box:
            painter.fillRect(QRectF(at.x() - metrics.horizontalAdvance(u' ') / 2, at.y() - metrics.ascent(),
                                 metrics.horizontalAdvance(word + u' '), metrics.height())
                                 .toRect(),
                QColor(0, 0, 0, 150));
            break;
        }
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

const char *const said[] = {"You never told me that the bridge had already collapsed.",
    "I thought we agreed to leave before the storm arrives.",
    "Whatever happens tonight, do not let them follow you.",
    "She has been reluctant to speak since the trial began.",
    "Honestly, I could not care less about the reward."};

const char *const saidElsewhere[] = {"Nobody warned us about the quicksand, so watch your step.",
    "Keep the engine running and wait behind the warehouse.",
    "My grandfather built this clock during a very long winter.",
    "They promised to return the money once the harvest is sold.",
    "Is there a reason why you are hiding underneath my desk?"};

/// Pictures as films have them, with what is said in the looks that players give it; all drawn by `seed`.
void addSubtitles(
    std::vector<Sheet> &sheets, const QString &name, std::span<const char *const> lines, quint32 seed)
{
    QRandomGenerator random(seed);
    const auto oneOf = [&random](auto... choices) {
        const std::array all{choices...};
        return all[static_cast<std::size_t>(random.bounded(static_cast<int>(all.size())))];
    };
    for (int i = 0; i < 40; ++i) {
        const QColor ink = oneOf(QColor(255, 255, 255), QColor(255, 255, 255), QColor(232, 232, 232),
            QColor(255, 240, 120), QColor(150, 235, 255), QColor(150, 250, 140));
        Canvas canvas(name + u' ' + QString::number(i), Qt::black, ink);
        const Scene scene = oneOf(Scene::dim, Scene::soft, Scene::bright, Scene::busy);
        const Edge edge = oneOf(Edge::outline, Edge::outline, Edge::thinOutline, Edge::shadow, Edge::box);
        const int grain = oneOf(0, 12, 24);
        canvas.paintScene(scene, grain, random.generate());
        const QString family = oneOf(u"Liberation Sans"_s, u"DejaVu Sans"_s, u"Liberation Serif"_s);
        const int pixels = oneOf(22, 26, 30, 34);
        QFont font = fontOf(family, pixels, oneOf(QFont::Medium, QFont::DemiBold, QFont::Bold));
        font.setItalic(oneOf(false, false, false, true));
        const char *line = lines[static_cast<std::size_t>(random.bounded(static_cast<int>(lines.size())))];
        canvas.write(QString::fromLatin1(line), font, {30, 70, 700, 124}, edge);
        canvas.compress(oneOf(95, 80, 65));
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
    addSubtitles(sheets, u"subtitle"_s, said, 7);
    addSubtitles(sheets, u"new subtitle"_s, saidElsewhere, 1001);
    for (const quint32 seed : {4004, 5005, 6006}) // one set alone may be a lucky one
        addSubtitles(sheets, u"unseen subtitle"_s, saidElsewhere, seed);
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
