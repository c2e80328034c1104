#pragma once

#include "review/LetterSlots.h"

#include <QWidget>

namespace nimbrelle {

class Theme;

/// One box for each letter of an answer. A right letter has a solid bar below it, a wrong one a dashed bar.
class SlotsView : public QWidget {
    Q_OBJECT

public:
    SlotsView(const Theme &theme, const QString &answer);

    void setTyped(const QString &typed);
    /// The width that there is, in device-independent pixels; the height follows from it.
    void setAvailableWidth(int width);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void fitHeight();
    void paintBox(QPainter &painter, const QRect &place, const LetterSlots::Box &box) const;

    const Theme &m_theme;
    LetterSlots m_slots;
    qsizetype m_widest = 1; // boxes in a row
};

} // namespace nimbrelle
