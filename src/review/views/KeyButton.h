#pragma once

#include "widgets/Theme.h"

#include <QPushButton>

#include <optional>

namespace nimbrelle {

/// A large button with the key that presses it in a cap of its own.
class KeyButton : public QPushButton {
    Q_OBJECT

public:
    enum class Kind { primary, outlined };
    enum class Cap { beside, below };

    /// An empty `key` has no cap.
    KeyButton(const Theme &theme, const QString &name, const QString &text, const QString &key,
        Kind kind = Kind::primary, Cap cap = Cap::beside);

    /// The width that neither label nor cap needs more of.
    int neededWidth() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSize capSize() const;
    void paintCap(QPainter &painter, const QRect &place, const QColor &colour) const;

    const Theme &m_theme;
    const QString m_key;
    const Kind m_kind;
    const Cap m_cap;
};

} // namespace nimbrelle
