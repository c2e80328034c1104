#pragma once

#include "platform/InstalledApplications.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QSortFilterProxyModel;

namespace nimbrelle {

class Theme;

/// Lets the user pick one of the installed programs by name and icon.
class ApplicationChooser : public QDialog {
    Q_OBJECT

public:
    ApplicationChooser(
        const Theme &theme, const QList<InstalledApplication> &applications, QWidget *parent = nullptr);

signals:
    void chosen(const QString &bundleID);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void filter(const QString &text);
    void take();

    QSortFilterProxyModel *m_shown;
    QLineEdit *m_search;
    QListView *m_list;
    QLabel *m_none;
    QPushButton *m_choose;
};

} // namespace nimbrelle
