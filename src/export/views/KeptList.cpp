#include "export/views/KeptList.h"

#include "widgets/Controls.h"
#include "widgets/Layouts.h"

#include <QLabel>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

KeptList::KeptList(const Theme &theme) : m_theme(theme)
{
    setObjectName(u"keptBackups"_s);
    bareLayout<QVBoxLayout>(this, theme.points(4))->setContentsMargins(0, theme.points(6), 0, 0);
    hide();
}

void KeptList::setBackups(const QList<KeptBackup> &backups)
{
    if (m_backups == backups)
        return;
    m_backups = backups;
    for (QWidget *line : findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        takeAway(line);
    for (const KeptBackup &backup : backups)
        layout()->addWidget(makeLine(backup));
    setVisible(!backups.isEmpty());
}

void KeptList::setStartable(bool isStartable)
{
    for (auto *button : findChildren<QPushButton *>())
        setEnabledKeepingFocus(*button, isStartable);
}

QWidget *KeptList::makeLine(const KeptBackup &backup)
{
    auto *line = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(line, m_theme.points(8));
    QLabel *text = makeLabel(m_theme, backup.text(), TextType::small, Tone::ink);
    text->setObjectName(u"keptBackup"_s);
    row->addWidget(text, 1);
    auto *restore = makeButton(m_theme, u"restoreBackup"_s, u"恢复"_s, {.kind = ButtonKind::link});
    restore->setAccessibleName(u"恢复 "_s + backup.text());
    connect(restore, &QPushButton::clicked, this, [this, backup] { emit chosen(backup); });
    row->addWidget(restore);
    return line;
}

} // namespace nimbrelle
