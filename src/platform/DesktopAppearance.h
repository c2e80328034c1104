#pragma once

#include <QObject>

namespace nimbrelle {

/// How the desktop asks programs to look.
struct Appearance {
    bool isDark = false;
    bool isStill = false; ///< nothing should move

    bool operator==(const Appearance &) const = default;
};

class DesktopAppearance : public QObject {
    Q_OBJECT

public:
    /// As far as the desktop has told by now; a guess until it has.
    virtual Appearance current() const = 0;

signals:
    void changed();
};

} // namespace nimbrelle
