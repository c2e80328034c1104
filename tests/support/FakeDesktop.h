#pragma once

#include "platform/FrontApplication.h"
#include "platform/InstalledApplications.h"
#include "platform/LaunchAtLogin.h"
#include "platform/Permissions.h"
#include "platform/Screens.h"
#include "platform/SessionLock.h"
#include "platform/WindowAtPointer.h"
#include "platform/WindowSystem.h"

#include <map>

namespace nimbrelle {

class FakeFrontApplication final : public FrontApplication {
public:
    std::optional<Application> current() const override { return front; }
    bool isTold() const override { return told; }
    std::optional<QString> ownBundleID() const override { return own; }
    void activate(const Application &application) override { activated.append(application); }

    std::optional<Application> front;
    bool told = true;
    std::optional<QString> own = QStringLiteral("nimbrelle");
    QList<Application> activated;
};

/// The same window is everywhere, where it was when it was pointed at.
class FakeWindowAtPointer final : public WindowAtPointer {
public:
    PointedWindow current() const override { return pointed; }
    QRectF areaOf(const Application &) const override { return pointed.area; }
    bool isGrabbed() const override { return grabbed; }

    PointedWindow pointed;
    bool grabbed = false;
};

class FakeSessionLock final : public SessionLock {
public:
    bool isLocked() const override { return m_isLocked; }
    void lock(bool isLocked)
    {
        m_isLocked = isLocked;
        emit changed();
    }

private:
    bool m_isLocked = false;
};

/// One screen of 1280 by 800 points with a panel of 30 points at its top, unless told otherwise.
class FakeScreens final : public Screens {
public:
    QList<Screen> all() const override { return screens; }

    QList<Screen> screens{{1, {0, 0, 1280, 800}, {0, 0, 1280, 770}, 1}};
};

class FakeWindowSystem final : public WindowSystem {
public:
    explicit FakeWindowSystem(bool isComposited = false) : composited(isComposited) { }
    bool isComposited() const override { return composited; }
    void setVisibleArea(quintptr, const QList<QRect> &area, const QMargins &) override { visible = area; }
    void flush() override { }
    QPoint toolkitPointOf(QPoint pixel) const override { return pixel; }

    bool composited;
    QList<QRect> visible;
};

class FakePermissions final : public Permissions {
public:
    GrantState state(Grant grant) const override { return states.at(grant); }
    void request(Grant grant) override { requested.append(grant); }

    std::map<Grant, GrantState> states{
        {Grant::accessibility, {true, {}}}, {Grant::screenCapture, {true, {}}}};
    QList<Grant> requested;
};

class FakeInstalledApplications final : public InstalledApplications {
public:
    QList<InstalledApplication> all() const override { return applications; }

    QList<InstalledApplication> applications;
};

class FakeLaunchAtLogin final : public LaunchAtLogin {
public:
    bool isEnabled() const override { return enabled; }
    std::optional<QString> setEnabled(bool wanted) override
    {
        if (!failure)
            enabled = wanted;
        return failure;
    }

    bool enabled = false;
    std::optional<QString> failure;
};

} // namespace nimbrelle
