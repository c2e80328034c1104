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

void KeptList::setBackups(const QList<KeptBackup> &backups, const QDateTime &now)
{
    QStringList texts;
    for (const KeptBackup &backup : backups)
        texts.append(backup.text(now));
    if (m_backups == backups && m_texts == texts)
        return;
    m_backups = backups;
    m_texts = texts;
    for (QWidget *line : findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        takeAway(line);
    for (qsizetype i = 0; i < backups.size(); ++i)
        layout()->addWidget(makeLine(backups[i], texts[i]));
    setVisible(!backups.isEmpty());
}

void KeptList::setStartable(bool isStartable)
{
    for (auto *button : findChildren<QPushButton *>())
        setEnabledKeepingFocus(*button, isStartable);
}

QWidget *KeptList::makeLine(const KeptBackup &backup, const QString &text)
{
    auto *line = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(line, m_theme.points(8));
    QLabel *label = makeLabel(m_theme, text, TextType::small, Tone::ink);
    label->setObjectName(u"keptBackup"_s);
    row->addWidget(label, 1);
    auto *restore = makeButton(m_theme, u"restoreBackup"_s, u"恢复"_s, {.kind = ButtonKind::link});
    restore->setAccessibleName(u"恢复 "_s + text);
    connect(restore, &QPushButton::clicked, this, [this, backup] { emit chosen(backup); });
    row->addWidget(restore);
    return line;
}

} // namespace nimbrelle
