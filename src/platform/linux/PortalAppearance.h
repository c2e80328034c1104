#pragma once

#include "platform/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QVariantMap>

namespace nimbrelle {

/// The settings that the desktop's portal tells, by group and key.
using PortalSettings = QMap<QString, QVariantMap>;

/// What they ask for; where they say nothing, `guess` stands.
Appearance appearanceOf(const PortalSettings &settings, Appearance guess);

/// Follows the settings portal. Asks without waiting; without a portal the guess stands.
class PortalAppearance final : public DesktopAppearance {
    Q_OBJECT

public:
    explicit PortalAppearance(
        QDBusConnection bus = QDBusConnection::sessionBus(), Appearance guess = guessOfToolkit());

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
    PortalSettings m_settings;
    Appearance m_current;
};

} // namespace nimbrelle
