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

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;

const QString common = u"org.freedesktop.appearance"_s;
const QString gnome = u"org.gnome.desktop.interface"_s;
const QString kde = u"org.kde.kdeglobals.KDE"_s;

std::optional<bool> isDark(const PortalSettings &settings)
{
    switch (settings.value(common).value(u"color-scheme"_s).toUInt()) {
    case 1:
        return true;
    case 2:
        return false;
    default: // no preference: older desktops have only a theme
        if (isDarkThemeName(settings.value(gnome).value(u"gtk-theme"_s).toString()))
            return true;
        return std::nullopt;
    }
}

std::optional<bool> isStill(const PortalSettings &settings)
{
    if (settings.value(common).value(u"reduced-motion"_s).toUInt() == 1)
        return true;
    const QVariant animations = settings.value(gnome).value(u"enable-animations"_s);
    if (animations.isValid())
        return !animations.toBool();
    bool isNumber = false;
    const double speed = settings.value(kde).value(u"AnimationDurationFactor"_s).toDouble(&isNumber);
    return isNumber ? std::optional(speed <= 0) : std::nullopt;
}

} // namespace

bool isDarkThemeName(const QString &name)
{
    return name.endsWith(u"-dark"_s, Qt::CaseInsensitive) || name.endsWith(u":dark"_s, Qt::CaseInsensitive);
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
    m_bus.connect(
        service, path, interface, u"SettingChanged"_s, this, SLOT(take(QString, QString, QDBusVariant)));
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
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, u"ReadAll"_s);
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
