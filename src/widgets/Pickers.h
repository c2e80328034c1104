#pragma once

#include <QComboBox>
#include <QSlider>

/// Controls that hold a value and lie in a page that scrolls: the wheel moves the page and never the value.
namespace nimbrelle {

class Theme;

/// One of a few choices.
class Picker : public QComboBox {
    Q_OBJECT

public:
    Picker(const Theme &theme, const QString &name, const QString &what, const QStringList &choices,
        QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    const Theme &m_theme;
};

/// A value between two ends in equal steps.
class StepSlider : public QSlider {
    Q_OBJECT

public:
    struct Range {
        double from = 0;
        double to = 1;
        double step = 0.1;
    };

    StepSlider(
        const Theme &theme, const QString &name, const QString &what, Range range, QWidget *parent = nullptr);

    /// Shows the nearest step, and says nothing of it.
    void showValue(double value);

signals:
    void chosen(double value); ///< by the user

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    const Theme &m_theme;
    const Range m_range;
};

} // namespace nimbrelle
