#include "widgets/Form.h"

#include "widgets/ReadText.h"

#include <QAbstractButton>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTransform>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double groupMargin = 14;
constexpr double rowMargin = 10;
constexpr double firstNoteGap = 2;
constexpr double noteGap = 6;
constexpr double columnGap = 10;
constexpr double headingGap = 8;
constexpr double messageIcon = 15;
constexpr double chevronSize = 13;

/// The icon's chevron points down; a closed fold's points to the right.
QIcon chevron(const Theme &theme, qreal ratio, bool open)
{
    const int size = theme.points(chevronSize);
    QPixmap picture = iconPixmap(Icon::chevronDown, size, ratio, theme.colour(Tone::ink2));
    if (!open)
        picture = picture.transformed(QTransform().rotate(-90));
    picture.setDevicePixelRatio(ratio);
    return padded(picture, {0, 0, iconPadding(theme), 0});
}

} // namespace

FormRow::FormRow(const Theme &theme, QWidget *parent)
    : QWidget(parent)
    , m_theme(theme)
    , m_column(new QVBoxLayout(this))
    , m_line(new QHBoxLayout)
    , m_rule(makeLine())
{
    m_column->setContentsMargins(0, 0, 0, theme.points(rowMargin));
    m_column->setSpacing(0);
    m_column->addWidget(m_rule);
    m_column->addSpacing(theme.points(rowMargin));
    m_column->addLayout(m_line);
    m_line->setSpacing(theme.points(columnGap));
    m_rule->hide();
}

FormRow::FormRow(const Theme &theme, const QString &label, QWidget *control) : FormRow(theme)
{
    setLabel(label);
    if (control)
        m_line->addWidget(control, 0, Qt::AlignTop);
}

void FormRow::setLabel(const QString &label)
{
    if (!m_label) {
        m_label = makeLabel(m_theme, {}, TextType::text, Tone::ink);
        m_label->setWordWrap(true);
        m_label->setMinimumHeight(m_theme.points(24));
        m_label->setMaximumHeight(QWIDGETSIZE_MAX);
        m_line->insertWidget(0, m_label, 1);
    }
    m_label->setText(label);
}

void FormRow::add(QWidget *widget)
{
    const bool isFirst = m_column->indexOf(m_line) == m_column->count() - 1;
    m_column->addSpacing(m_theme.points(isFirst ? firstNoteGap : noteGap));
    m_column->addWidget(widget);
}

ReadText *FormRow::addNote(const QString &name, const QString &text)
{
    return addNote(name, text, Tone::ink2);
}

ReadText *FormRow::addNote(const QString &name, const QString &text, Tone tone)
{
    ReadText *note = makeNote(m_theme, name, text, tone);
    add(note);
    return note;
}

void FormRow::setRuled(bool ruled)
{
    m_rule->setVisible(ruled);
}

void FormRow::mouseReleaseEvent(QMouseEvent *event)
{
    const bool isOnLine = m_label && event->position().y() <= m_label->geometry().bottom();
    if (event->button() == Qt::LeftButton && m_target && isOnLine && rect().contains(event->pos()))
        m_target->click();
}

FormGroup::FormGroup(const Theme &theme, QWidget *parent) : QFrame(parent), m_column(new QVBoxLayout(this))
{
    setProperty("kind", u"group"_s);
    const int margin = theme.points(groupMargin);
    m_column->setContentsMargins(margin, 0, margin, 0);
    m_column->setSpacing(0);
}

void FormGroup::add(FormRow *row)
{
    row->setRuled(m_rows++ > 0);
    m_column->addWidget(row);
}

/// The rows go later, since the button that brought it about may be in one of them.
void FormGroup::clear()
{
    m_rows = 0;
    while (QLayoutItem *item = m_column->takeAt(0)) {
        if (QWidget *row = item->widget()) {
            row->hide();
            row->setParent(nullptr);
            row->deleteLater();
        }
        delete item;
    }
}

Fold::Fold(const Theme &theme, const QString &name, const QString &title, QWidget *body, QWidget *parent)
    : QWidget(parent)
    , m_theme(theme)
    , m_title(makeButton(theme, name, title, {.kind = ButtonKind::plain, .type = TextType::text}))
    , m_body(body)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(theme.points(columnGap));
    m_title->setProperty("fold", true);
    m_title->setFont(theme.font(TextType::text));
    m_title->setIconSize({theme.points(chevronSize) + iconPadding(theme), theme.points(chevronSize)});
    column->addWidget(m_title, 0, Qt::AlignLeft);
    column->addWidget(body);
    connect(m_title, &QPushButton::clicked, this, [this] {
        setOpen(!m_isOpen);
        emit toggled(m_isOpen);
    });
    setOpen(false);
}

void Fold::setOpen(bool open)
{
    m_isOpen = open;
    m_title->setIcon(chevron(m_theme, devicePixelRatioF(), open));
    m_title->setAccessibleDescription(open ? u"已展开"_s : u"已收起"_s);
    m_body->setVisible(open);
}

ReadText *makeHeading(const Theme &theme, const QString &text)
{
    return makeReadText(theme, u"heading"_s, text, text, {.type = TextType::text, .weight = QFont::DemiBold});
}

QWidget *makeMessage(const Theme &theme, const QString &name, Icon icon, const QString &text, Tone tone)
{
    auto *message = new QWidget;
    auto *row = new QHBoxLayout(message);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.points(6));
    auto *sign = new QVBoxLayout;
    sign->setContentsMargins(0, theme.points(2), 0, 0);
    sign->addWidget(makeIconLabel(theme, icon, messageIcon, theme.colour(tone)));
    sign->addStretch();
    row->addLayout(sign);
    row->addWidget(makeNote(theme, name, text, tone), 1);
    return message;
}

ReadText *makeNote(const Theme &theme, const QString &name, const QString &text, Tone tone)
{
    return makeReadText(theme, name, text, text, {.type = TextType::small, .tone = tone});
}

QWidget *makeSection(const Theme &theme, const QString &heading, QWidget *group)
{
    auto *section = new QWidget;
    auto *column = new QVBoxLayout(section);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(theme.points(headingGap));
    column->addWidget(makeHeading(theme, heading));
    column->addWidget(group);
    return section;
}

} // namespace nimbrelle
