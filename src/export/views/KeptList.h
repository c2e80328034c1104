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

    void setBackups(const QList<KeptBackup> &backups, const QDateTime &now);
    void setStartable(bool isStartable);

signals:
    void chosen(const KeptBackup &backup);

private:
    QWidget *makeLine(const KeptBackup &backup, const QString &text);

    const Theme &m_theme;
    QList<KeptBackup> m_backups;
    QStringList m_texts; ///< of those
};

} // namespace nimbrelle
