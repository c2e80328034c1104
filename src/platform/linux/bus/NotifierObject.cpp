#include "platform/linux/bus/NotifierObject.h"

#include <QtEndian>

namespace nimbrelle {

namespace {

constexpr qsizetype longestLabel = 16;

NotifierPixmap pixmapOf(const QImage &image)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    const qsizetype count = qsizetype{argb.width()} * argb.height();
    NotifierPixmap pixmap{argb.width(), argb.height(), QByteArray(4 * count, Qt::Uninitialized)};
    qToBigEndian<quint32>(argb.constBits(), count, pixmap.pixels.data());
    return pixmap;
}

QList<NotifierPixmap> pixmapsOf(const QList<QImage> &images)
{
    QList<NotifierPixmap> pixmaps;
    for (const QImage &image : images)
        pixmaps.append(pixmapOf(image));
    return pixmaps;
}

} // namespace

NotifierObject::NotifierObject(
    const QString &menuPath, QString iconName, const QList<QImage> &icons, MenuRequest menuRequest)
    : m_menuPath(menuPath)
    , m_iconName(std::move(iconName))
    , m_icon(pixmapsOf(icons))
    , m_menuRequest(std::move(menuRequest))
{
}

void NotifierObject::setLabel(const QString &label)
{
    if (std::exchange(m_label, label) != label)
        emit XAyatanaNewLabel(m_label, labelGuide());
}

void NotifierObject::setToolTip(const QString &title, const QString &text)
{
    if (title == m_toolTipTitle && text == m_toolTipText)
        return;
    m_toolTipTitle = title;
    m_toolTipText = text;
    emit NewToolTip();
}

QString NotifierObject::labelGuide() const
{
    return m_label.isEmpty() ? QString() : QString(longestLabel, u'n');
}

} // namespace nimbrelle
