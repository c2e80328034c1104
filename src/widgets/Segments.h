#pragma once

#include <QFrame>

class QButtonGroup;

namespace nimbrelle {

class Theme;

/// A row of choices of which exactly one holds. Reached as one with Tab; the arrow keys go from one to the
/// next.
class Segments : public QFrame {
    Q_OBJECT

public:
    /// The buttons are named `name` with their number behind it.
    Segments(const Theme &theme, const QString &name, const QStringList &labels);

    int chosen() const;
    void choose(int which); ///< tells nobody

signals:
    void picked(int which); ///< by the user

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showChosen();
    void step(int by);

    const Theme &m_theme;
    QButtonGroup *m_buttons;
};

} // namespace nimbrelle
