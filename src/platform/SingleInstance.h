#pragma once

#include <QObject>

namespace nimbrelle {

/// Sees to it that one process at a time works on a data directory.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// False when another process works on it: that one has been told, and this one is to end. Call it once.
    virtual bool claim() = 0;

signals:
    /// The program was started again, and that process has ended in favour of this one.
    void reopened();
};

} // namespace nimbrelle
