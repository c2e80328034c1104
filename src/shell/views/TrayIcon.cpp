#include "shell/views/TrayIcon.h"

#include "shell/views/StatusPictures.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QIcon glyph()
{
    QIcon icon;
    for (const QImage &image : statusIcons())
        icon.addPixmap(QPixmap::fromImage(image));
    return icon;
}

} // namespace

TrayIcon::TrayIcon(const Theme &theme) : m_popup(theme), m_icon(glyph())
{
    connect(&m_icon, &QSystemTrayIcon::activated, this, &TrayIcon::open);
    connect(&m_popup, &StatusPopup::chosen, this, &StatusItem::chosen);
}

void TrayIcon::show(MenuSource menu)
{
    m_source = std::move(menu);
    m_icon.show();
}

void TrayIcon::setToolTip(const QString &title, const QString &text)
{
    QString lines = text;
    lines.replace(u'\n', u"<br>"_s);
    m_icon.setToolTip(u"<b>%1</b><br>%2"_s.arg(title.toHtmlEscaped(), lines));
}

void TrayIcon::open(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::Context)
        m_popup.popUp(m_source(MenuUse::opening), m_icon.geometry());
}

} // namespace nimbrelle
