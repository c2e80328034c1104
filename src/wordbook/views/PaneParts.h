#pragma once

#include "widgets/IconTable.h"
#include "widgets/ReadText.h"

class QLineEdit;
class QMenu;
class QPushButton;
class QVBoxLayout;
class QWidget;

/// What the panes of the notebook share.
namespace nimbrelle {

struct PageSource;

/// Null adds nothing, and no gap either.
void addBelow(QVBoxLayout *column, int gap, QWidget *widget);

/// Above a part of a pane; `note` may be empty.
QWidget *makeSectionTitle(
    const Theme &theme, const QString &title, const QString &note = {}, QWidget *parent = nullptr);

/// The icon in the middle of the first small line, and the text beside it.
QWidget *makeMarked(const Theme &theme, Icon icon, Tone tone, QWidget *text);
/// The same in a widget that has no layout yet and may hold the text already.
void fillMarked(QWidget *holder, const Theme &theme, Icon icon, Tone tone, QWidget *text);

/// Into a widget that has no layout yet and may hold the content already: the content, and at its upper right
/// the buttons that belong to it.
void fillRecord(QWidget *holder, const Theme &theme, QWidget *content, const QList<QPushButton *> &buttons);

/// `lead` and then where it was met, in small letters; null when there is nothing to say.
QWidget *makeOrigin(
    const Theme &theme, const QString &lead, const PageSource &source, QWidget *parent = nullptr);

/// A field with a lens in it; `what` tells a screen reader what it is for.
QLineEdit *makeSearchField(const Theme &theme, const QString &name, const QString &what);

/// Opens the menu below the button, in line with its right edge.
void popUpBelow(QMenu &menu, const QPushButton &button);

/// Centred in its pane.
QWidget *makeEmptyText(const Theme &theme, const QString &name, const QString &text);

} // namespace nimbrelle
