#pragma once

#include "card/CardPanel.h"

#include <QPointer>
#include <QPropertyAnimation>
#include <QWidget>

namespace nimbrelle {

class CardView;
class Theme;
class WindowSystem;

/// The card's window: built once and kept, above everything, and without the focus. With a compositor it has
/// a shadow in a margin of its own; without one it is cut to its shape. Frames are those of the card alone.
class CardPanelWindow : public QWidget, public CardPanel {
    Q_OBJECT

public:
    /// Both outlive it.
    CardPanelWindow(const Theme &theme, WindowSystem &system);

    /// The view becomes a child of the window.
    void setView(CardView &view);

    QSizeF fittingSize(QSizeF available) override;
    void place(const QRectF &frame) override;
    void bringToFront() override;
    void orderOut() override;
    bool isVisible() const override { return QWidget::isVisible(); }
    QRectF frame() const override { return m_frame; }

signals:
    void pointerCame();
    /// By its own motion: a card that changes its size under it leaves the pointer, and this is not told.
    void pointerLeft();

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    int shadowMargin() const;
    void arrange();
    void tellVisibleArea();
    void fadeIn();
    void paintShadow(QPainter &painter, const QRectF &card) const;

    const Theme &m_theme;
    WindowSystem &m_system;
    bool m_isComposited = false;
    QPointer<CardView> m_view;
    QRectF m_frame;
    bool m_hasPointer = false;
    QPropertyAnimation m_fade;
};

} // namespace nimbrelle
