#include "wordbook/views/StageBar.h"

#include "notebook/WordStore.h"
#include "widgets/Controls.h"
#include "widgets/FlowLayout.h"
#include "widgets/Layouts.h"
#include "wordbook/views/PaneParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QString nameOf(StageAction::Kind kind)
{
    switch (kind) {
    case StageAction::Kind::want:
        return u"actionWant"_s;
    case StageAction::Kind::start:
        return u"actionStart"_s;
    case StageAction::Kind::rest:
        return u"actionRest"_s;
    case StageAction::Kind::spell:
        return u"actionSpell"_s;
    }
    Q_UNREACHABLE();
}

std::optional<Icon> iconOfStage(DisplayStage stage)
{
    switch (stage) {
    case DisplayStage::learning:
        return Icon::flame;
    case DisplayStage::seen:
        return std::nullopt;
    case DisplayStage::resting:
        return Icon::moon;
    case DisplayStage::mastered:
        return Icon::capFill;
    case DisplayStage::dormant:
        return Icon::sleep;
    }
    Q_UNREACHABLE();
}

} // namespace

StageActions::StageActions(const WordbookParts &parts, const WordFacts &facts, QWidget *parent)
    : QWidget(parent)
{
    setObjectName(u"stageActions"_s);
    auto *flow = new FlowLayout(parts.theme.points(6), parts.theme.points(6), this);
    for (const StageAction &action : facts.actions) {
        auto *button = makeButton(parts.theme, nameOf(action.kind), action.text, {.kind = ButtonKind::soft});
        button->setEnabled(action.isEnabled);
        connect(button, &QPushButton::clicked, this,
            [&words = parts.words, action, id = facts.entry.id] { perform(action, words, id); });
        flow->addWidget(button);
    }
}

StageBar::StageBar(const WordbookParts &parts, const WordFacts &facts, QWidget *parent)
    : QFrame(parent)
    , m_parts(parts)
    , m_actions(facts.actions)
    , m_id(facts.entry.id)
    , m_adjustButton(makeAdjustButton())
{
    setObjectName(u"stageBar"_s);
    setProperty("kind", u"stageBar"_s);
    const Theme &theme = parts.theme;
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(theme.points(14), theme.points(7), theme.points(8), theme.points(7));
    row->setSpacing(theme.points(10));
    row->addWidget(makeState(facts), 1);
    row->addWidget(m_adjustButton, 0, Qt::AlignTop);
}

QWidget *StageBar::makeState(const WordFacts &facts)
{
    const Theme &theme = m_parts.theme;
    auto *state = new QWidget(this);
    auto *flow = new FlowLayout(theme.points(8), 0, state);
    const auto put = [&](QWidget *widget, double height) { // in the middle of the button beside it
        auto *holder = new QWidget(state);
        auto *column = bareLayout<QVBoxLayout>(holder, 0);
        const int rest = theme.points(26 - height);
        column->setContentsMargins(0, rest / 2, 0, rest - rest / 2);
        column->addWidget(widget);
        flow->addWidget(holder);
    };
    if (const auto icon = iconOfStage(facts.stage))
        put(makeIconLabel(theme, *icon, 16,
                theme.colour(facts.stage == DisplayStage::learning ? Tone::accentLine : Tone::ink2)),
            16);
    const double pitch = Theme::pitch(TextType::small);
    const auto putText = [&](const QString &name, const QString &text, Tone tone, QFont::Weight weight) {
        QLabel *line = makeLabel(theme, text, TextType::small, tone, weight);
        line->setObjectName(name);
        put(line, pitch);
    };
    putText(u"stage"_s, label(facts.stage), Tone::ink, QFont::Medium);
    if (!facts.reviews.isEmpty())
        putText(u"reviews"_s, facts.reviews, Tone::ink2, QFont::Normal);
    if (facts.isLeech) {
        QLabel *leech = makeCapsule(theme, u"难啃"_s, Tint::orange);
        leech->setObjectName(u"leech"_s);
        put(leech, 20);
    }
    return state;
}

QPushButton *StageBar::makeAdjustButton()
{
    auto *button = makeButton(m_parts.theme, u"adjust"_s, u"调整"_s,
        {.kind = ButtonKind::soft, .icon = Icon::chevronDown, .iconPlace = IconPlace::behind});
    button->setFixedHeight(m_parts.theme.points(26));
    connect(button, &QPushButton::clicked, this, &StageBar::showAdjustMenu);
    return button;
}

/// Made when it is asked for: it is a window, and costs as much as a section of the pane.
void StageBar::showAdjustMenu()
{
    auto *menu = new QMenu(m_adjustButton);
    menu->setObjectName(u"adjustMenu"_s);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const StageAction &action : m_actions) {
        QAction *item =
            menu->addAction(action.text, this, [this, action] { perform(action, m_parts.words, m_id); });
        item->setObjectName(nameOf(action.kind));
        item->setEnabled(action.isEnabled);
    }
    popUpBelow(*menu, *m_adjustButton);
}

} // namespace nimbrelle
