#include "screen/views/RegionOverlayWindow.h"

#include "platform/WindowSystem.h"
#include "screen/RegionDrag.h"
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

constexpr double dimmedOpacity = 0.18;
constexpr double pillOpacity = 0.6;
constexpr double hintSize = 14;
constexpr double hintBottom = 90; // from the screen's top to the pill's lower edge
constexpr double edgeWidth = 2;
constexpr int grabRetryMilliseconds = 40;

const auto hint = u"拖一个框选中要翻译的英文 · Esc 取消"_s;

QColor black(double opacity)
{
    QColor colour(Qt::black);
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

/// In the toolkit's desktop coordinates, whose y runs down from the top of the main screen.
QRect toolkitRect(const QRectF &frame)
{
    const QScreen *main = QGuiApplication::primaryScreen();
    const QRect screen = main ? main->geometry() : QRect();
    const QPointF corner(screen.x() + frame.x(), screen.y() + screen.height() - frame.y() - frame.height());
    return {corner.toPoint(), frame.size().toSize()};
}

} // namespace

class RegionOverlayWindow::OverlayWidget final : public QWidget {
public:
    using Finished = std::function<void(std::optional<QRectF>)>;

    OverlayWidget(const Theme &theme, const QRect &area, bool isTranslucent, Finished finished);

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
    QPixmap m_background; // null where the screen itself shows through
    RegionDrag m_drag;
    QBasicTimer m_grabTimer;
};

// Past the window manager, so that no panel stays above us, nothing is tiled and nothing fades in or out.
RegionOverlayWindow::OverlayWidget::OverlayWidget(
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
        m_background = screen->grabWindow();
}

void RegionOverlayWindow::OverlayWidget::showEvent(QShowEvent *)
{
    activateWindow();
    setFocus();
    grabKeys();
}

/// The focus alone can be taken away again by the window manager. While a shortcut of its own is held down
/// it has the keyboard, so we ask until we get it.
void RegionOverlayWindow::OverlayWidget::grabKeys()
{
    if (windowHandle()->setKeyboardGrabEnabled(true))
        m_grabTimer.stop();
    else if (!m_grabTimer.isActive())
        m_grabTimer.start(grabRetryMilliseconds, this);
}

void RegionOverlayWindow::OverlayWidget::timerEvent(QTimerEvent *)
{
    if (isVisible())
        grabKeys();
}

void RegionOverlayWindow::OverlayWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (!m_background.isNull())
        painter.drawPixmap(rect(), m_background);
    QPainterPath dimmed;
    dimmed.addRect(rect());
    if (const auto frame = m_drag.rect())
        dimmed.addRect(*frame); // the odd-even rule leaves it out
    painter.fillPath(dimmed, black(dimmedOpacity));
    if (const auto frame = m_drag.rect()) {
        painter.setPen(QPen(m_theme.colour(Tone::accentLine), m_theme.points(edgeWidth), Qt::SolidLine,
            Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(*frame);
    }
    paintHint(painter);
}

void RegionOverlayWindow::OverlayWidget::paintHint(QPainter &painter) const
{
    QFont font = m_theme.font(TextType::text, QFont::Medium);
    font.setPixelSize(m_theme.points(hintSize));
    const QFontMetrics metrics(font);
    const QSize size(
        metrics.horizontalAdvance(hint) + m_theme.points(24), metrics.height() + m_theme.points(12));
    const QRect pill(QPoint((width() - size.width()) / 2, m_theme.points(hintBottom) - size.height()), size);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(black(pillOpacity));
    painter.drawRoundedRect(pill, size.height() / 2.0, size.height() / 2.0);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(pill, Qt::AlignCenter, hint);
}

QPointF RegionOverlayWindow::OverlayWidget::inside(QPointF point) const
{
    return {std::clamp(point.x(), 0.0, double(width())), std::clamp(point.y(), 0.0, double(height()))};
}

QRect RegionOverlayWindow::OverlayWidget::edgeArea() const
{
    const int edge = m_theme.points(edgeWidth) + 1;
    return m_drag.rect().value_or(QRectF()).toAlignedRect().adjusted(-edge, -edge, edge, edge);
}

void RegionOverlayWindow::OverlayWidget::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_drag.press(inside(event->position()));
    update();
}

void RegionOverlayWindow::OverlayWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton) || !m_drag.rect())
        return;
    const QRect before = edgeArea();
    m_drag.move(inside(event->position()));
    update(before | edgeArea());
}

void RegionOverlayWindow::OverlayWidget::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_drag.rect())
        finish(m_drag.release(inside(event->position())));
}

void RegionOverlayWindow::OverlayWidget::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        finish(std::nullopt);
}

void RegionOverlayWindow::OverlayWidget::finish(std::optional<QRectF> frame)
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
    delete m_widget;
}

void RegionOverlayWindow::open(const QRectF &screenFrame, std::function<void(std::optional<QRectF>)> finished)
{
    close();
    m_previousFocus = QGuiApplication::focusWindow();
    m_widget =
        new OverlayWidget(m_theme, toolkitRect(screenFrame), m_system.isComposited(), std::move(finished));
    m_widget->show();
    m_widget->raise();
}

void RegionOverlayWindow::close()
{
    OverlayWidget *widget = std::exchange(m_widget, nullptr);
    if (!widget)
        return;
    widget->windowHandle()->setKeyboardGrabEnabled(false);
    widget->hide();
    (void)QCursor::pos(); // asks the display server, which has then done what was sent to it before
    if (m_previousFocus)
        m_previousFocus->requestActivate();
    widget->deleteLater(); // later, for it may be one of its own events that closes it
}

} // namespace nimbrelle
