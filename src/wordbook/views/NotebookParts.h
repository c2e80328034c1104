#pragma once

#include "widgets/IconTable.h"
#include "widgets/ReadText.h"

class QHBoxLayout;
class QPushButton;
class QVBoxLayout;
class QWidget;

namespace nimbrelle {

class Clock;
class ConfigStore;
class Speaker;
class WordStore;
struct PageSource;

/// What the notebook's views are made with; all of it outlives them.
struct NotebookParts {
    const Theme &theme;
    const Clock &clock;
    const ConfigStore &config;
    WordStore &words;
    Speaker &speaker;
};

/// Small things that its panes share.
namespace notebook {

/// A column without margins or gaps.
QVBoxLayout *makeColumn(QWidget *holder, int spacing = 0);
QHBoxLayout *makeRow(int spacing);
void add(QVBoxLayout *column, int gap, QWidget *widget);

/// Above a part of a pane; `note` may be empty.
QWidget *makeSectionTitle(const Theme &theme, const QString &title, const QString &note = {});

/// The icon in the middle of the first small line, and the text beside it.
QWidget *makeMarked(const Theme &theme, Icon icon, Tone tone, QWidget *text);

/// What stands left, and at its upper right the buttons that belong to it.
QWidget *makeRecord(const Theme &theme, QWidget *content, const QList<QPushButton *> &buttons);

/// `lead` and then where it was met, in small letters; null when there is nothing to say.
QWidget *makeOrigin(const Theme &theme, const QString &lead, const PageSource &source);

/// Centred in its pane.
QWidget *makeEmptyText(const Theme &theme, const QString &name, const QString &text);

} // namespace notebook

} // namespace nimbrelle
