#pragma once

#include "widgets/Icons.h"
#include "widgets/Theme.h"

#include <optional>

class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

/// The small things that every screen is made of. All are made without a parent, for a layout to take.
namespace nimbrelle {

enum class ButtonKind { outlined, primary, soft, chip, dockChip, link, plain, icon, offer };

enum class IconPlace { before, behind };

struct ButtonLook {
    ButtonKind kind = ButtonKind::outlined;
    std::optional<Icon> icon = std::nullopt;
    TextType type = TextType::small;
    std::optional<Tone> iconTone = std::nullopt; ///< the text's own unless given
    IconPlace iconPlace = IconPlace::before; ///< where it stands to the text
};

/// `name` is the object name. A button without a text needs setAccessibleName.
QPushButton *makeButton(const Theme &theme, const QString &name, const QString &text, const ButtonLook &look);
/// The same for a button that is there already.
void dressButton(QPushButton &button, const Theme &theme, const QString &name, const QString &text,
    const ButtonLook &look);
/// What a button's icon needs on the side of the text beyond the gap that the style leaves; in
/// device-independent pixels.
int iconPadding(const Theme &theme);
/// For a button without an icon; its height stays.
void setButtonKind(QPushButton &button, ButtonKind kind);
/// Disables a control while what it began runs, without handing the focus to another in between: it has it
/// again afterwards, unless the user went elsewhere.
void setEnabledKeepingFocus(QWidget &control, bool isEnabled);
/// Whether one in it is disabled so and would have the focus again.
bool awaitsFocus(const QWidget &area);
/// A round one with nothing but an icon; `what` is said by its tip and to a screen reader.
QPushButton *makeIconButton(
    const Theme &theme, const QString &name, const QString &what, Icon icon, double size);

/// One line to type in, 32 high; `what` tells a screen reader what it is for.
QLineEdit *makeField(
    const Theme &theme, const QString &name, const QString &what, const QString &placeholder);

/// One line, which is never taken for markup.
QLabel *makeLabel(const Theme &theme, const QString &text, TextType type, Tone tone,
    std::optional<QFont::Weight> weight = std::nullopt);
QLabel *makeIconLabel(const Theme &theme, Icon icon, double size, const QColor &colour);
QLabel *makeCapsule(const Theme &theme, const QString &text, Tint tint);
/// A grey one, for a thing that can't be pressed.
QLabel *makeChipLabel(const Theme &theme, const QString &text);

/// Removes a widget, or nothing for null, from what is seen and found by name. It is deleted only later,
/// since what was pressed may be in it.
void takeAway(QWidget *widget);

/// A hairline from side to side.
QFrame *makeLine();
/// An empty area of a kind that the style sheet knows.
QFrame *makeArea(const QString &kind);

/// As much of a window's preferred size as the screen that the user looks at has room for.
QSize boundedByScreen(const QWidget &window, QSize preferred);

void setPlainToolTip(QWidget &widget, const QString &text);

} // namespace nimbrelle
