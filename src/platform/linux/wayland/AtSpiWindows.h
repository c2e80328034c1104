#pragma once

#include "platform/linux/bus/AtSpiBus.h"
#include "platform/linux/bus/AtSpiQuestions.h"
#include "platform/linux/files/DesktopEntry.h"
#include "platform/linux/wayland/SessionWindows.h"

#include <QCoreApplication>

namespace nimbrelle {

/// The active window alone, without its place, as the programs themselves tell it on the accessibility bus,
/// for compositors that tell nobody. While none of them says that it is active, the one in front may be any
/// that tells nothing there.
class AtSpiWindows final : public SessionWindows {
    Q_OBJECT

public:
    /// `activeOnX` tells the X server's active program, absent while it has none: that one needs no bus. All
    /// outlive this.
    AtSpiWindows(AtSpiBus &bus, std::function<std::optional<Application>()> activeOnX,
        qint64 ownProcess = QCoreApplication::applicationPid());

    bool isOffered() const override;
    bool isTold() const override { return !m_windows.isEmpty(); }
    const QList<SessionWindow> &all() const override { return m_windows; }
    QCoro::Task<> refresh() override;
    /// Nobody may raise another program's window; the compositor gives the focus back by itself.
    void activate(const Application &) override { }

private slots:
    void handleActivation(const QDBusMessage &event);
    void handleDeactivation(const QDBusMessage &event);
    void handleStateChanged(const QDBusMessage &event);

private:
    void listen();
    void forget(const QString &program);
    QCoro::Task<std::optional<SessionWindow>> findActive();
    QCoro::Task<std::optional<AccessibleElement>> findActiveElement();
    QCoro::Task<std::optional<SessionWindow>> windowOf(AccessibleElement element);
    void set(const std::optional<SessionWindow> &window);

    AtSpiBus &m_bus;
    const std::function<std::optional<Application>()> m_activeOnX;
    const qint64 m_ownProcess;
    AtSpiQuestions m_questions{m_bus};
    ProgramNames m_names;
    std::optional<AccessibleElement> m_newest; ///< the one that was last told to be active
    QList<SessionWindow> m_windows; ///< one or none
    quint64 m_asked = 0;
    quint64 m_answered = 0; ///< which of those all() is the answer to
};

} // namespace nimbrelle
