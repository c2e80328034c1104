#include "card/views/CardPanelWindow.h"

#include "card/views/CardView.h"
#include "platform/WindowSystem.h"
#include "widgets/Theme.h"

#include <QBitmap>
#include <QCursor>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

#include <utility>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int fadeMilliseconds = 120;
constexpr double shadowWidth = 18;
constexpr int shadowLayers = 10;
constexpr double shadowStep = 1.8;
constexpr double shadowDrop = 4;
constexpr double maskReserve = 1;
constexpr double screenMargin = 32;
constexpr double screenShare = 0.9;

/// The top-left corner on the toolkit's desktop, whose y runs down from the top of the main screen.
QPoint cornerOf(const QRectF &frame)
{
    const QScreen *main = QGuiApplication::primaryScreen();
    const QRect screen = main ? main->geometry() : QRect();
    return {
        qRound(screen.x() + frame.x()), qRound(screen.y() + screen.height() - frame.y() - frame.height())};
}

QPainterPath rounded(const QRectF &area, double radius)
{
    QPainterPath path;
    path.addRoundedRect(area, radius, radius);
    return path;
}

/// Of whole points only, so it is left a little wider than the edge that is drawn inside it.
QBitmap roundMask(QSize size, double radius)
{
    QBitmap mask(size);
    mask.clear();
    QPainter painter(&mask);
    painter.fillPath(rounded(QRect(QPoint(0, 0), size), radius - maskReserve), Qt::color1);
    return mask;
}

} // namespace

CardPanelWindow::CardPanelWindow(const Theme &theme, WindowSystem &system)
    // A tool tip is the one kind of window that never takes the focus, is on all desktops and above
    // full-screen windows.
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_theme(theme)
    , m_system(system)
    , m_isComposited(m_system.isComposited())
    , m_fade(this, "windowOpacity")
{
    setObjectName(u"cardPanel"_s);
    setWindowTitle(u"Nimbrelle"_s);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_AlwaysShowToolTips); // our window is never the active one
    setAttribute(Qt::WA_TranslucentBackground, m_isComposited);
    setFocusPolicy(Qt::NoFocus);
    m_fade.setDuration(fadeMilliseconds);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void CardPanelWindow::setView(CardView &view)
{
    m_view = &view;
    view.setParent(this);
    view.show();
    arrange();
}

int CardPanelWindow::shadowMargin() const
{
    return m_isComposited ? m_theme.points(shadowWidth) : 0;
}

QSizeF CardPanelWindow::fittingSize(QSizeF available)
{
    if (!m_view)
        return {};
    m_view->setLimits(
        {qRound(available.width()) - m_theme.points(screenMargin), qRound(available.height() * screenShare)});
    return m_view->fittingSize();
}

void CardPanelWindow::place(const QRectF &frame)
{
    m_frame = frame;
    const int around = shadowMargin();
    const QRect card(cornerOf(frame), frame.size().toSize());
    m_hasPointer = m_hasPointer && card.contains(QCursor::pos());
    setGeometry(card.adjusted(-around, -around, around, around));
    arrange();
}

void CardPanelWindow::arrange()
{
    if (!m_view)
        return;
    const int around = shadowMargin();
    m_view->setGeometry(rect().adjusted(around, around, -around, -around));
    if (m_isComposited)
        clearMask();
    else
        setMask(roundMask(size(), m_view->cornerRadius()));
    tellVisibleArea();
    update();
}

/// The margin belongs to what lies below it.
void CardPanelWindow::tellVisibleArea()
{
    if (!m_isComposited || !m_view || !testAttribute(Qt::WA_WState_Created))
        return;
    const double ratio = devicePixelRatioF();
    const QRectF card = QRectF(m_view->geometry());
    const QTransform toPixels = QTransform::fromScale(ratio, ratio);
    const QPolygonF outline = rounded(card, m_view->cornerRadius()).toFillPolygon(toPixels);
    const int around = qRound(shadowMargin() * ratio);
    const QRegion area(outline.toPolygon());
    m_system.setVisibleArea(internalWinId(), {area.begin(), area.end()}, {around, around, around, around});
}

void CardPanelWindow::enterEvent(QEnterEvent *)
{
    m_hasPointer = true;
    emit pointerCame();
}

void CardPanelWindow::leaveEvent(QEvent *)
{
    if (std::exchange(m_hasPointer, false))
        emit pointerLeft();
}

void CardPanelWindow::bringToFront()
{
    const bool isNew = !isVisible();
    if (isNew && m_isComposited != m_system.isComposited()) {
        m_isComposited = !m_isComposited;
        hide();
        setAttribute(Qt::WA_TranslucentBackground, m_isComposited);
        destroy(); // the kind of window is chosen when it is created
        place(m_frame);
    }
    if (isNew)
        fadeIn();
    create(); // which show() would do only after it has shown the margin
    tellVisibleArea();
    show();
    raise();
    // The toolkit draws nothing before the window system has told it that the window is exposed, which it
    // hears only from the event loop. An override-redirect window is mapped in the order of the requests.
    setAttribute(Qt::WA_Mapped);
    repaint();
    m_system.flush();
}

void CardPanelWindow::fadeIn()
{
    m_fade.stop();
    if (!m_isComposited || m_theme.isStill()) {
        setWindowOpacity(1);
        return;
    }
    m_fade.setStartValue(0.2);
    m_fade.setEndValue(1.0);
    m_fade.start();
}

void CardPanelWindow::orderOut()
{
    m_fade.stop();
    hide();
}

void CardPanelWindow::paintShadow(QPainter &painter, const QRectF &card) const
{
    const bool isDark = m_theme.scheme() == Theme::Scheme::dark;
    QColor shade = isDark ? QColor(Qt::black) : m_theme.colour(Tone::ink);
    shade.setAlphaF(isDark ? 0.055F : 0.02F);
    const double radius = m_view->cornerRadius();
    for (int i = 1; i <= shadowLayers; ++i) {
        const double more = i * shadowStep * m_theme.scale() - shadowDrop * m_theme.scale();
        const QRectF layer =
            card.adjusted(-more, -more, more, more).translated(0, shadowDrop * m_theme.scale());
        painter.fillPath(rounded(layer, radius + std::max(more, 0.0)), shade);
    }
}

void CardPanelWindow::paintEvent(QPaintEvent *)
{
    if (!m_view)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(m_view->geometry());
    if (m_isComposited)
        paintShadow(painter, card);
    else
        painter.fillRect(rect(), m_theme.colour(Tone::borderStrong));
    painter.setPen(QPen(m_theme.colour(m_isComposited ? Tone::border : Tone::borderStrong), 1));
    painter.setBrush(m_theme.colour(Tone::surface));
    painter.drawPath(rounded(card.adjusted(0.5, 0.5, -0.5, -0.5), m_view->cornerRadius()));
}

} // namespace nimbrelle
