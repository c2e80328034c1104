#pragma once

#include "platform/linux/bus/StatusNotifierTypes.h"

#include <QDBusObjectPath>
#include <QImage>
#include <QPoint>

#include <functional>

namespace nimbrelle {

/// The status item as it stands on the bus, for bars to read. Whatever of this program is no business of the
/// bus stays out of it, for the bus relays all signals that it can.
class NotifierObject final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ name CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ iconName CONSTANT)
    Q_PROPERTY(QList<nimbrelle::NotifierPixmap> IconPixmap READ iconPixmap CONSTANT)
    Q_PROPERTY(QString IconAccessibleDesc READ name CONSTANT)
    Q_PROPERTY(QString OverlayIconName READ nothing CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ nothing CONSTANT)
    Q_PROPERTY(nimbrelle::NotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)

public:
    using MenuRequest = std::function<void(QPoint at)>;

    /// `iconName` is one that the icon theme surely holds, or empty. `menuRequest` is for bars that don't
    /// draw the menu themselves.
    NotifierObject(
        const QString &menuPath, QString iconName, const QList<QImage> &icons, MenuRequest menuRequest);

    void setLabel(const QString &label);
    void setToolTip(const QString &title, const QString &text);

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const { return QStringLiteral("nimbrelle"); }
    QString name() const { return QStringLiteral("Nimbrelle"); }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString nothing() const { return {}; }
    QString iconName() const { return m_iconName; }
    QList<NotifierPixmap> iconPixmap() const { return m_icon; }
    NotifierToolTip toolTip() const { return {{}, {}, m_toolTipTitle, m_toolTipText}; }
    bool itemIsMenu() const { return true; } ///< a left click opens the menu too
    QDBusObjectPath menu() const { return m_menuPath; }
    QString label() const { return m_label; }
    /// The widest that the label gets, so that the bar can keep its place.
    QString labelGuide() const;

public slots:
    // The protocol's own names.
    Q_SCRIPTABLE void Activate(int x, int y) { m_menuRequest({x, y}); }
    Q_SCRIPTABLE void ContextMenu(int x, int y) { m_menuRequest({x, y}); }
    Q_SCRIPTABLE void SecondaryActivate(int, int) { } ///< a middle click means nothing here

signals:
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void XAyatanaNewLabel(const QString &label, const QString &guide);

private:
    const QDBusObjectPath m_menuPath;
    const QString m_iconName;
    const QList<NotifierPixmap> m_icon;
    const MenuRequest m_menuRequest;
    QString m_label;
    QString m_toolTipTitle;
    QString m_toolTipText;
};

} // namespace nimbrelle
