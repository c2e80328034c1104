#include "widgets/Controls.h"

#include "widgets/Typing.h"

#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTextDocument>

#include <algorithm>
#include <array>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct KindOfButton {
    const char *name;
    double height;
    Tone text;
};

// In the order of ButtonKind.
constexpr std::array kinds{
    KindOfButton{"outlined", 28, Tone::ink},
    KindOfButton{"primary", 28, Tone::primaryText},
    KindOfButton{"soft", 28, Tone::ink},
    KindOfButton{"chip", 26, Tone::ink},
    KindOfButton{"dockChip", 26, Tone::ink},
    KindOfButton{"link", 24, Tone::accent},
    KindOfButton{"plain", 24, Tone::ink2},
    KindOfButton{"icon", 26, Tone::ink2},
    KindOfButton{"offer", 30, Tone::accent},
};

constexpr double iconBesideText = 14;
constexpr double gapBesideIcon = 6;
constexpr int gapOfStyle = 4; // whatever the size of the text
constexpr double fieldHeight = 32;
constexpr double screenShare = 0.9;

double devicePixelRatio()
{
    return qGuiApp->devicePixelRatio();
}

QString escaped(QString text) // an ampersand would become a key
{
    return text.replace(u'&', u"&&"_s);
}

} // namespace

QPushButton *makeButton(const Theme &theme, const QString &name, const QString &text, const ButtonLook &look)
{
    auto *button = new QPushButton;
    dressButton(*button, theme, name, text, look);
    return button;
}

void dressButton(
    QPushButton &button, const Theme &theme, const QString &name, const QString &text, const ButtonLook &look)
{
    const KindOfButton &kind = kinds.at(static_cast<std::size_t>(look.kind));
    button.setText(escaped(text));
    button.setObjectName(name);
    button.setAccessibleName(text);
    button.setProperty("kind", QString::fromLatin1(kind.name));
    button.setFont(theme.font(look.type, look.type == TextType::tiny ? QFont::Normal : QFont::Medium));
    button.setFixedHeight(theme.points(kind.height));
    button.setCursor(Qt::PointingHandCursor);
    if (look.icon) {
        const bool isBehind = look.iconPlace == IconPlace::behind;
        const int size = theme.points(iconBesideText);
        const int padding = text.isEmpty() ? 0 : iconPadding(theme);
        button.setIcon(
            iconOf(*look.icon, size, devicePixelRatio(), theme.colour(look.iconTone.value_or(kind.text)),
                isBehind ? QMargins(padding, 0, 0, 0) : QMargins(0, 0, padding, 0)));
        button.setIconSize({size + padding, size});
        button.setLayoutDirection(isBehind ? Qt::RightToLeft : Qt::LeftToRight);
    }
}

int iconPadding(const Theme &theme)
{
    return theme.points(gapBesideIcon) - gapOfStyle;
}

void setButtonKind(QPushButton &button, ButtonKind kind)
{
    const QString name = QString::fromLatin1(kinds.at(static_cast<std::size_t>(kind)).name);
    if (button.property("kind") == name)
        return;
    button.setProperty("kind", name);
    button.style()->unpolish(&button); // the sheet looks at properties only when it polishes
    button.style()->polish(&button);
}

void setEnabledKeepingFocus(QWidget &control, bool isEnabled)
{
    if (!isEnabled && control.hasFocus()) {
        control.clearFocus();
        control.setProperty("awaitsFocus", true);
    }
    control.setEnabled(isEnabled);
    if (!isEnabled || !control.property("awaitsFocus").toBool())
        return;
    control.setProperty("awaitsFocus", false);
    if (!control.window()->focusWidget())
        control.setFocus(Qt::OtherFocusReason);
}

bool awaitsFocus(const QWidget &area)
{
    const auto controls = area.findChildren<QWidget *>();
    return std::ranges::any_of(
        controls, [](const QWidget *control) { return control->property("awaitsFocus").toBool(); });
}

QPushButton *makeIconButton(
    const Theme &theme, const QString &name, const QString &what, Icon icon, double size)
{
    auto *button = makeButton(theme, name, {}, {.kind = ButtonKind::icon});
    const int pixels = theme.points(size);
    button->setIcon(iconOf(icon, pixels, devicePixelRatio(), theme.colour(Tone::ink2)));
    button->setIconSize({pixels, pixels});
    button->setFixedWidth(button->maximumHeight());
    button->setAccessibleName(what);
    button->setToolTip(what);
    return button;
}

QLineEdit *makeField(const Theme &theme, const QString &name, const QString &what, const QString &placeholder)
{
    auto *field = new QLineEdit;
    field->setObjectName(name);
    field->setAccessibleName(what);
    field->setPlaceholderText(placeholder);
    field->setProperty("kind", u"field"_s);
    field->setFont(theme.font(TextType::text));
    field->setMinimumHeight(theme.points(fieldHeight));
    new ComposingGuard(*field);
    new SpaceGuard(*field);
    return field;
}

QLabel *makeLabel(
    const Theme &theme, const QString &text, TextType type, Tone tone, std::optional<QFont::Weight> weight)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setForegroundRole(QPalette::WindowText); // in a button it would be the button's own
    label->setFont(weight ? theme.font(type, *weight) : theme.font(type));
    label->setFixedHeight(theme.points(Theme::pitch(type)));
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, theme.colour(tone));
    label->setPalette(palette);
    return label;
}

QLabel *makeIconLabel(const Theme &theme, Icon icon, double size, const QColor &colour)
{
    auto *label = new QLabel;
    const int pixels = theme.points(size);
    label->setPixmap(iconPixmap(icon, pixels, devicePixelRatio(), colour));
    label->setFixedSize(pixels, pixels);
    return label;
}

QLabel *makeCapsule(const Theme &theme, const QString &text, Tint tint)
{
    static constexpr std::array names{"blue", "green", "orange", "purple"};
    auto *label = makeLabel(theme, text, TextType::tiny, Tone::ink, QFont::Medium);
    label->setProperty("tint", QString::fromLatin1(names.at(static_cast<std::size_t>(tint))));
    label->setIndent(0); // the sheet pads it
    label->setFixedHeight(theme.points(20));
    label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return label;
}

QLabel *makeChipLabel(const Theme &theme, const QString &text)
{
    auto *label = makeLabel(theme, text, TextType::tiny, Tone::ink);
    label->setProperty("kind", u"chip"_s);
    label->setFixedHeight(theme.points(20));
    return label;
}

void takeAway(QWidget *widget)
{
    if (!widget)
        return;
    widget->hide();
    widget->setParent(nullptr);
    widget->deleteLater();
}

QFrame *makeLine()
{
    QFrame *line = makeArea(u"line"_s);
    line->setFixedHeight(1);
    return line;
}

QFrame *makeArea(const QString &kind)
{
    auto *area = new QFrame;
    area->setProperty("kind", kind);
    return area;
}

QSize boundedByScreen(const QWidget &window, QSize preferred)
{
    const QScreen *screen = window.screen();
    return screen ? preferred.boundedTo(screen->availableSize() * screenShare) : preferred;
}

void setPlainToolTip(QWidget &widget, const QString &text)
{
    widget.setToolTip(Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text);
}

} // namespace nimbrelle
