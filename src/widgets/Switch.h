#pragma once

#include <QAbstractButton>

namespace nimbrelle {

class Theme;

/// On or off, with the knob at the right when on.
class Switch : public QAbstractButton {
    Q_OBJECT

public:
    /// `what` is said by a screen reader.
    Switch(const Theme &theme, const QString &name, const QString &what, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Theme &m_theme;
};

} // namespace nimbrelle
