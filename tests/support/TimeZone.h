#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <ctime>

namespace nimbrelle {

/// Puts the process into a time zone for as long as it lives.
class TimeZone {
public:
    explicit TimeZone(const char *name) : m_before(qgetenv("TZ")) { set(name); }
    ~TimeZone() { set(m_before); }
    Q_DISABLE_COPY_MOVE(TimeZone)

private:
    static void set(const QByteArray &name)
    {
        qputenv("TZ", name);
        ::tzset();
    }

    QByteArray m_before;
};

} // namespace nimbrelle
