#pragma once

#include "platform/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QVariantMap>

namespace nimbrelle {

class XSettings;

/// The settings that the desktop's portal tells, by group and key.
using PortalSettings = QMap<QString, QVariantMap>;

/// Whether a theme is a dark one by its name.
bool isDarkThemeName(const QString &name);

/// What they ask for; where they say nothing, `guess` stands.
Appearance appearanceOf(const PortalSettings &settings, Appearance guess);

/// Follows the settings portal. Asks without waiting; without a portal the guess stands, refined by what
/// the X server's settings say.
class PortalAppearance final : public DesktopAppearance {
    Q_OBJECT

public:
    PortalAppearance(QDBusConnection bus, Appearance guess, const XSettings *settings = nullptr);

    Appearance current() const override { return m_current; }

    /// From the colours that the toolkit found and the name of the theme that the environment wants. To be
    /// asked before the program sets colours of its own.
    static Appearance guessOfToolkit();

private slots:
    void take(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void update();

    QDBusConnection m_bus;
    const Appearance m_guess;
    const XSettings *const m_shared; // null for none
    PortalSettings m_settings;
    Appearance m_current;
};

} // namespace nimbrelle
