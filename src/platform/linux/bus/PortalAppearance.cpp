#include "platform/linux/bus/PortalAppearance.h"

#include "platform/linux/x11/XSettings.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QGuiApplication>
#include <QPalette>

#include <optional>

namespace nimbrelle {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

const QString common = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString kde = QStringLiteral("org.kde.kdeglobals.KDE");

std::optional<bool> isDark(const PortalSettings &settings)
{
    switch (settings.value(common).value(QStringLiteral("color-scheme")).toUInt()) {
    case 1:
        return true;
    case 2:
        return false;
    default: // no preference: older desktops have only a theme
        if (isDarkThemeName(settings.value(gnome).value(QStringLiteral("gtk-theme")).toString()))
            return true;
        return std::nullopt;
    }
}

std::optional<bool> isStill(const PortalSettings &settings)
{
    if (settings.value(common).value(QStringLiteral("reduced-motion")).toUInt() == 1)
        return true;
    const QVariant animations = settings.value(gnome).value(QStringLiteral("enable-animations"));
    if (animations.isValid())
        return !animations.toBool();
    bool isNumber = false;
    const double speed =
        settings.value(kde).value(QStringLiteral("AnimationDurationFactor")).toDouble(&isNumber);
    return isNumber ? std::optional(speed <= 0) : std::nullopt;
}

} // namespace

bool isDarkThemeName(const QString &name)
{
    return name.endsWith(QStringLiteral("-dark"), Qt::CaseInsensitive)
        || name.endsWith(QStringLiteral(":dark"), Qt::CaseInsensitive);
}

Appearance appearanceOf(const PortalSettings &settings, Appearance guess)
{
    return {isDark(settings).value_or(guess.isDark), isStill(settings).value_or(guess.isStill)};
}

PortalAppearance::PortalAppearance(QDBusConnection bus, Appearance guess, const XSettings *settings)
    : m_bus(std::move(bus)), m_guess(guess), m_shared(settings), m_current(guess)
{
    if (m_shared) {
        connect(m_shared, &XSettings::changed, this, &PortalAppearance::update);
        update();
    }
    if (!m_bus.isConnected())
        return;
    qRegisterMetaType<QDBusVariant>(); // the bus looks for it by name, and may not have met it yet
    m_bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
        SLOT(take(QString, QString, QDBusVariant)));
    auto *watcher = new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &PortalAppearance::ask);
    ask();
}

Appearance PortalAppearance::guessOfToolkit()
{
    Appearance guess;
    guess.isDark = isDarkThemeName(qEnvironmentVariable("GTK_THEME"));
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        const QPalette palette = QGuiApplication::palette();
        guess.isDark |=
            palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    }
    return guess;
}

void PortalAppearance::ask()
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    call << QStringList{common, gnome, kde};
    auto *answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusMessage reply = answer->reply();
        const QVariant settings = reply.arguments().value(0);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != u"a{sa{sv}}")
            return;
        m_settings = qdbus_cast<PortalSettings>(settings);
        update();
    });
}

void PortalAppearance::take(const QString &group, const QString &key, const QDBusVariant &value)
{
    m_settings[group][key] = value.variant();
    update();
}

void PortalAppearance::update()
{
    const Appearance next = appearanceOf(m_settings, m_shared ? m_shared->refined(m_guess) : m_guess);
    if (next == m_current)
        return;
    m_current = next;
    emit changed();
}

} // namespace nimbrelle
