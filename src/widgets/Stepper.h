#pragma once

#include <QFrame>

namespace nimbrelle {

class StepButton;
class Theme;

/// A minus and a plus side by side. What a step does is its owner's.
class Stepper : public QFrame {
    Q_OBJECT

public:
    /// The buttons are called `name` with "Less" and "More" behind it.
    Stepper(const Theme &theme, const QString &name, QWidget *parent = nullptr);

    /// `what`: the value in words, for a screen reader.
    void setValue(const QString &what, bool canGoDown, bool canGoUp);

signals:
    void steppedDown();
    void steppedUp();

private:
    StepButton *m_less;
    StepButton *m_more;
};

} // namespace nimbrelle
