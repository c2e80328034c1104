#include "screen/views/RegionOverlayWindow.h"

#include "platform/WindowSystem.h"
#include "widgets/Theme.h"

#include <QBasicTimer>
#include <QCursor>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double shadeOpacity = 0.18;
constexpr double pillOpacity = 0.6;
constexpr double hintSize = 14;
constexpr double hintFoot = 90; // from the screen's top to the pill's lower edge
constexpr double edgeWidth = 2;
constexpr int grabAgainMilliseconds = 40;

const auto hint = u"拖一个框选中要翻译的英文 · Esc 取消"_s;

QColor black(double opacity)
{
    QColor colour(Qt::black);
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

/// On the toolkit's desktop, whose y runs down from the top of the main screen.
QRect toolkitRect(const QRectF &frame)
{
    const QScreen *main = QGuiApplication::primaryScreen();
    const QRect screen = main ? main->geometry() : QRect();
    const QPointF corner(screen.x() + frame.x(), screen.y() + screen.height() - frame.y() - frame.height());
    return {corner.toPoint(), frame.size().toSize()};
}

} // namespace

class RegionOverlayWindow::Shade final : public QWidget {
public:
    using Finished = std::function<void(std::optional<QRectF>)>;

    Shade(const Theme &theme, const QRect &area, bool isTranslucent, Finished finished);

protected:
    void showEvent(QShowEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void grabKeys();
    QPointF inside(QPointF point) const;
    QRect edgeArea() const;
    void paintHint(QPainter &painter) const;
    void finish(std::optional<QRectF> frame);

    const Theme &m_theme;
    Finished m_finished;
    QPixmap m_behind; // null where the screen itself can be seen through us
    RegionDrag m_drag;
    QBasicTimer m_grabTimer;
};

// Past the window manager, so that no panel stays above us, nothing is tiled and nothing fades in or out.
RegionOverlayWindow::Shade::Shade(
    const Theme &theme, const QRect &area, bool isTranslucent, Finished finished)
    : QWidget(nullptr, Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_theme(theme)
    , m_finished(std::move(finished))
{
    setObjectName(u"regionOverlay"_s);
    setWindowTitle(u"Nimbrelle"_s);
    setAccessibleName(hint);
    setAttribute(Qt::WA_TranslucentBackground, isTranslucent);
    setAttribute(Qt::WA_OpaquePaintEvent, !isTranslucent);
    setCursor(Qt::CrossCursor);
    setFocusPolicy(Qt::StrongFocus);
    setGeometry(area);
    if (QScreen *screen = QGuiApplication::screenAt(area.center()); screen && !isTranslucent)
        m_behind = screen->grabWindow();
}

void RegionOverlayWindow::Shade::showEvent(QShowEvent *)
{
    activateWindow();
    setFocus();
    grabKeys();
}

/// The focus alone can be taken away again by the window manager. While a shortcut of its own is held down
/// it has the keyboard, so we ask until we get it.
void RegionOverlayWindow::Shade::grabKeys()
{
    if (windowHandle()->setKeyboardGrabEnabled(true))
        m_grabTimer.stop();
    else if (!m_grabTimer.isActive())
        m_grabTimer.start(grabAgainMilliseconds, this);
}

void RegionOverlayWindow::Shade::timerEvent(QTimerEvent *)
{
    if (isVisible())
        grabKeys();
}

void RegionOverlayWindow::Shade::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (!m_behind.isNull())
        painter.drawPixmap(rect(), m_behind);
    QPainterPath shade;
    shade.addRect(rect());
    if (const auto frame = m_drag.rect())
        shade.addRect(*frame); // the odd-even rule leaves it out
    painter.fillPath(shade, black(shadeOpacity));
    if (const auto frame = m_drag.rect()) {
        painter.setPen(QPen(m_theme.colour(Tone::accentLine), m_theme.points(edgeWidth), Qt::SolidLine,
            Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(*frame);
    }
    paintHint(painter);
}

void RegionOverlayWindow::Shade::paintHint(QPainter &painter) const
{
    QFont font = m_theme.font(TextType::text, QFont::Medium);
    font.setPixelSize(m_theme.points(hintSize));
    const QFontMetrics metrics(font);
    const QSize size(
        metrics.horizontalAdvance(hint) + m_theme.points(24), metrics.height() + m_theme.points(12));
    const QRect pill(QPoint((width() - size.width()) / 2, m_theme.points(hintFoot) - size.height()), size);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(black(pillOpacity));
    painter.drawRoundedRect(pill, size.height() / 2.0, size.height() / 2.0);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(pill, Qt::AlignCenter, hint);
}

QPointF RegionOverlayWindow::Shade::inside(QPointF point) const
{
    return {std::clamp(point.x(), 0.0, double(width())), std::clamp(point.y(), 0.0, double(height()))};
}

QRect RegionOverlayWindow::Shade::edgeArea() const
{
    const int edge = m_theme.points(edgeWidth) + 1;
    return m_drag.rect().value_or(QRectF()).toAlignedRect().adjusted(-edge, -edge, edge, edge);
}

void RegionOverlayWindow::Shade::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_drag.press(inside(event->position()));
    update();
}

void RegionOverlayWindow::Shade::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton) || !m_drag.rect())
        return;
    const QRect before = edgeArea();
    m_drag.move(inside(event->position()));
    update(before | edgeArea());
}

void RegionOverlayWindow::Shade::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_drag.rect())
        finish(m_drag.release(inside(event->position())));
}

void RegionOverlayWindow::Shade::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        finish(std::nullopt);
}

void RegionOverlayWindow::Shade::finish(std::optional<QRectF> frame)
{
    const Finished finished = std::exchange(m_finished, {});
    if (!finished)
        return;
    if (frame)
        frame->moveTop(height() - frame->bottom());
    finished(frame);
}

RegionOverlayWindow::RegionOverlayWindow(const Theme &theme, const WindowSystem &system)
    : m_theme(theme), m_system(system)
{
}

RegionOverlayWindow::~RegionOverlayWindow()
{
    delete m_shade;
}

void RegionOverlayWindow::open(const QRectF &screenFrame, std::function<void(std::optional<QRectF>)> finished)
{
    close();
    m_before = QGuiApplication::focusWindow();
    m_shade = new Shade(m_theme, toolkitRect(screenFrame), m_system.isComposited(), std::move(finished));
    m_shade->show();
    m_shade->raise();
}

void RegionOverlayWindow::close()
{
    Shade *shade = std::exchange(m_shade, nullptr);
    if (!shade)
        return;
    shade->windowHandle()->setKeyboardGrabEnabled(false);
    shade->hide();
    (void)QCursor::pos(); // asks the display server, which has then done what was sent to it before
    if (m_before)
        m_before->requestActivate();
    shade->deleteLater(); // later, for it may be one of its own events that closes it
}

} // namespace nimbrelle
