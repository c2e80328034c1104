#pragma once

#include "export/LocalBackups.h"

#include <QWidget>

namespace nimbrelle {

class Theme;

/// The backups that the program keeps by itself, each in a line with a button that brings it back.
class KeptList : public QWidget {
    Q_OBJECT

public:
    explicit KeptList(const Theme &theme);

    void setBackups(const QList<KeptBackup> &backups);
    void setStartable(bool isStartable);

signals:
    void chosen(const KeptBackup &backup);

private:
    QWidget *makeLine(const KeptBackup &backup);

    const Theme &m_theme;
    QList<KeptBackup> m_backups;
};

} // namespace nimbrelle
