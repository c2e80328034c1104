#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace nimbrelle {

class Theme;

/// The brush ring, turning while it can be seen; it stands still where the desktop asks for that.
class Spinner : public QWidget {
    Q_OBJECT

public:
    /// `size` in points.
    Spinner(const Theme &theme, double size, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    const Theme &m_theme;
    QBasicTimer m_timer;
    int m_step = 0;
};

} // namespace nimbrelle
