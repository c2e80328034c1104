#include "shell/views/StatusPopup.h"

#include "shell/views/StatusPictures.h"
#include "widgets/Theme.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QWidgetAction>

#include <cmath>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double rowHeight = 30;
constexpr double sideMargin = 10;
constexpr double iconSize = 16;
constexpr double gap = 10;
constexpr double indentStep = 14;
constexpr double keyGap = 28;

/// One line. The menu itself takes the mouse and the keys; this only draws.
class MenuLine : public QWidget {
public:
    MenuLine(const Theme &theme, MenuEntry entry, const QAction &action, const QMenu &menu)
        : m_theme(theme), m_entry(std::move(entry)), m_action(action), m_menu(menu)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setToolTip(m_entry.toolTip);
    }

    QSize sizeHint() const override
    {
        double width = 0;
        for (const MenuEntry::Run &run : runs())
            width += QFontMetricsF(fontOf(run)).horizontalAdvance(run.text);
        if (!m_entry.key.isEmpty())
            width += m_theme.points(keyGap) + m_theme.points(iconSize);
        return {static_cast<int>(std::ceil(textStart() + width)) + m_theme.points(sideMargin),
            m_theme.points(rowHeight)};
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (m_menu.activeAction() == &m_action) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(m_theme.colour(Tone::select));
            painter.drawRoundedRect(rect(), m_theme.points(6), m_theme.points(6));
        }
        paintIcon(painter);
        paintText(painter);
    }

private:
    QList<MenuEntry::Run> runs() const
    {
        return m_entry.runs.isEmpty() ? QList<MenuEntry::Run>{{m_entry.title, MenuEntry::Emphasis::plain}}
                                      : m_entry.runs;
    }

    QFont fontOf(const MenuEntry::Run &run) const
    {
        return run.emphasis == MenuEntry::Emphasis::strong ? m_theme.font(TextType::text, QFont::DemiBold)
                                                           : m_theme.font(TextType::text);
    }

    double textStart() const
    {
        return m_theme.points(sideMargin) + m_theme.points(iconSize) + m_theme.points(gap)
            + m_entry.indent * m_theme.points(indentStep);
    }

    void paintIcon(QPainter &painter) const
    {
        const auto icon = m_entry.isChecked ? std::optional(Icon::check) : menuIcon(m_entry.symbol);
        if (!icon)
            return;
        const int size = m_theme.points(iconSize);
        painter.drawPixmap(m_theme.points(sideMargin), (height() - size) / 2,
            iconPixmap(*icon, size, devicePixelRatioF(), m_theme.colour(Tone::ink2)));
    }

    void paintText(QPainter &painter) const
    {
        double x = textStart();
        for (const MenuEntry::Run &run : runs()) {
            painter.setFont(fontOf(run));
            painter.setPen(
                m_theme.colour(run.emphasis == MenuEntry::Emphasis::secondary ? Tone::ink2 : Tone::ink));
            painter.drawText(QRectF(x, 0, width() - x, height()), Qt::AlignVCenter, run.text);
            x += painter.fontMetrics().horizontalAdvance(run.text);
        }
        painter.setFont(m_theme.font(TextType::small));
        painter.setPen(m_theme.colour(Tone::ink3));
        painter.drawText(rect().adjusted(0, 0, -m_theme.points(sideMargin), 0),
            Qt::AlignVCenter | Qt::AlignRight, m_entry.key.toUpper());
    }

    const Theme &m_theme;
    const MenuEntry m_entry;
    const QAction &m_action;
    const QMenu &m_menu;
};

} // namespace

StatusPopup::StatusPopup(const Theme &theme, QWidget *parent) : QMenu(parent), m_theme(theme)
{
    setObjectName(u"statusMenu"_s);
    setToolTipsVisible(true);
}

void StatusPopup::popUp(const QList<MenuEntry> &entries, const QRect &clicked)
{
    clear();
    m_keys.clear();
    for (const MenuEntry &entry : entries)
        add(entry);
    ensurePolished();
    const QRect place = clicked.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : clicked;
    const QScreen *screen = QGuiApplication::screenAt(place.center());
    const bool isAtBottom = screen && place.center().y() > screen->geometry().center().y();
    const QPoint above(0, sizeHint().height());
    popup(isAtBottom ? place.topLeft() - above : place.bottomLeft() + QPoint(0, 1));
}

void StatusPopup::add(const MenuEntry &entry)
{
    if (entry.kind == MenuEntry::Kind::separator) {
        addSeparator();
        return;
    }
    auto *action = new QWidgetAction(this);
    // Drawn by the line; the text is for those who have the menu read to them.
    action->setText(entry.title);
    action->setToolTip(entry.toolTip);
    action->setEnabled(entry.isEnabled);
    action->setCheckable(entry.kind == MenuEntry::Kind::check);
    action->setChecked(entry.isChecked);
    action->setDefaultWidget(new MenuLine(m_theme, entry, *action, *this));
    connect(action, &QAction::triggered, this, [this, entry] { emit chosen(entry); });
    if (!entry.key.isEmpty())
        m_keys.insert(entry.key.toLower(), action);
    addAction(action);
}

void StatusPopup::keyPressEvent(QKeyEvent *event)
{
    QAction *action = m_keys.value(event->text().toLower());
    if (!action || event->modifiers() != Qt::NoModifier)
        return QMenu::keyPressEvent(event);
    close();
    action->trigger();
}

} // namespace nimbrelle
