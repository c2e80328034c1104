#include "platform/linux/bus/LinuxStatusItem.h"

namespace nimbrelle {

LinuxStatusItem::LinuxStatusItem(const QDBusConnection &bus, const StatusArt &art, Views views)
    : m_notifier(bus, art), m_views(std::move(views))
{
    connect(&m_notifier, &StatusItem::chosen, this, &StatusItem::chosen);
    connect(&m_notifier, &StatusNotifierItem::hostingChanged, this, &LinuxStatusItem::follow);
    connect(&m_notifier, &StatusNotifierItem::menuRequested, this,
        [this](QPoint at) { m_views.popUp(m_source(MenuUse::opening), at); });
}

void LinuxStatusItem::show(MenuSource menu)
{
    m_source = std::move(menu);
    m_notifier.show(m_source);
}

void LinuxStatusItem::setTitle(const QString &title)
{
    m_notifier.setTitle(title);
    if (m_tray)
        m_tray->setTitle(title);
}

void LinuxStatusItem::setToolTip(const QString &title, const QString &text)
{
    m_toolTipTitle = title;
    m_toolTipText = text;
    m_notifier.setToolTip(title, text);
    if (m_tray)
        m_tray->setToolTip(title, text);
}

void LinuxStatusItem::follow()
{
    if (m_notifier.hosting() != StatusNotifierItem::Hosting::absent) {
        m_tray.reset();
        emit seenChanged();
        return;
    }
    m_tray = m_views.makeTray();
    connect(m_tray.get(), &StatusItem::chosen, this, &StatusItem::chosen);
    m_tray->setToolTip(m_toolTipTitle, m_toolTipText);
    m_tray->show(m_source);
    emit seenChanged();
}

} // namespace nimbrelle
