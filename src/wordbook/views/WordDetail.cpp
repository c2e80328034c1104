#include "wordbook/views/WordDetail.h"

#include "notebook/WordStore.h"
#include "platform/Speaker.h"
#include "widgets/Controls.h"
#include "widgets/FlowLayout.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"
#include "wordbook/views/NoteView.h"
#include "wordbook/views/PaneParts.h"
#include "wordbook/views/StageBar.h"
#include "wordbook/views/WordHead.h"
#include "wordparts/WordParts.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

// In points.
constexpr double betweenSections = 20;
constexpr double belowTitle = 6;

} // namespace

FamilySection::FamilySection(const WordbookParts &parts, const WordFacts &facts, QWidget *parent)
    : QWidget(parent)
{
    setObjectName(u"family"_s);
    const Theme &theme = parts.theme;
    auto *column = bareLayout<QVBoxLayout>(this, theme.points(belowTitle));
    column->addWidget(makeSectionTitle(theme, u"词族"_s, {}, this));
    auto *words = new QWidget(this);
    auto *flow = new FlowLayout(theme.points(8), theme.points(6), words);
    if (const QString root = facts.entry.familyRoot.value_or(QString()); !root.isEmpty()) {
        QLabel *text = makeLabel(theme, u"词根 "_s + root, TextType::small, Tone::ink2);
        text->setObjectName(u"familyRoot"_s);
        text->setFixedHeight(theme.points(26));
        flow->addWidget(text);
    }
    for (const Relative &relative : facts.family) {
        auto *chip = makeButton(theme, u"relative"_s, relative.headword, {.kind = ButtonKind::chip});
        connect(chip, &QPushButton::clicked, this, [this, id = relative.id] { emit wordChosen(id); });
        flow->addWidget(chip);
    }
    if (flow->count() > 0)
        column->addWidget(words);
    else
        delete words;
    if (facts.family.isEmpty())
        column->addWidget(makeReadText(theme, u"noFamily"_s, u"词族"_s, noFamilyText(facts.entry),
            {.type = TextType::small, .tone = Tone::ink2}, this));
}

FormGallery::FormGallery(const WordbookParts &parts, const WordEntry &entry, QWidget *parent)
    : QWidget(parent)
{
    setObjectName(u"forms"_s);
    const Theme &theme = parts.theme;
    auto *column = bareLayout<QVBoxLayout>(this, theme.points(belowTitle));
    column->addWidget(makeSectionTitle(theme, u"形式图鉴"_s, u"在句子里遇到这种形式就会解锁"_s, this));
    auto *grid = new QGridLayout;
    grid->setSpacing(theme.points(8));
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    int place = 0;
    for (const FormSlot &slot : entry.formSlots()) {
        grid->addWidget(makeCell(theme, slot), place / 2, place % 2);
        ++place;
    }
    column->addLayout(grid);
}

QFrame *FormGallery::makeCell(const Theme &theme, const FormSlot &slot)
{
    QFrame *cell = makeArea(slot.record ? u"cell"_s : u"lockedCell"_s);
    cell->setParent(this);
    cell->setObjectName(u"form"_s);
    auto *row = new QHBoxLayout(cell);
    row->setContentsMargins(theme.points(10), theme.points(7), theme.points(10), theme.points(7));
    auto *texts = new QVBoxLayout;
    texts->setSpacing(theme.points(1));
    const auto addLabel = [&](const QString &name, const QString &text) {
        QLabel *line = makeLabel(theme, text, TextType::tiny, Tone::ink2);
        line->setObjectName(name);
        texts->addWidget(line);
    };
    addLabel(u"formKind"_s, label(slot.kind));
    texts->addWidget(slot.record
            ? makeReadText(theme, u"formText"_s, u"写法"_s, slot.record->form,
                {.type = TextType::text, .weight = QFont::Medium}, cell)
            : makeReadText(theme, u"formText"_s, u"写法"_s, u"???"_s,
                {.type = TextType::text, .tone = Tone::ink2, .weight = QFont::Medium}, cell));
    addLabel(u"formCount"_s, meetingText(slot));
    row->addLayout(texts, 1);
    if (!slot.record)
        row->addWidget(makeIconLabel(theme, Icon::lock, 13, theme.colour(Tone::ink2)), 0, Qt::AlignVCenter);
    return cell;
}

WordDetail::WordDetail(const WordbookParts &parts, const WordFacts &facts, QWidget *parent)
    : QWidget(parent)
    , m_parts(parts)
    , m_theme(parts.theme)
    , m_facts(facts)
    , m_rows(bareLayout<QVBoxLayout>(this, 0))
{
    setObjectName(u"wordDetail"_s);
    addHead();
    addSections();
    m_rows->addStretch();
}

void WordDetail::addHead()
{
    const WordEntry &entry = m_facts.entry;
    const WordHead head{.headword = entry.headword,
        .phonetic = entry.phonetic,
        .pos = entry.pos,
        .register_ = entry.register_,
        .meaningZh = entry.meaningZh,
        .definitionEn = entry.definitionEn};
    addBelow(m_rows, 0, makeHeadLine(m_theme, m_parts.speaker, head, TextType::title, this));
    QLabel *history = makeLabel(m_theme, m_facts.history, TextType::tiny, Tone::ink2);
    history->setObjectName(u"history"_s);
    addBelow(m_rows, m_theme.points(2), history);
    addBelow(m_rows, m_theme.points(10), new StageBar(m_parts, m_facts, this));
    addBelow(m_rows, m_theme.points(8), new StageActions(m_parts, m_facts, this));
    addBelow(m_rows, m_theme.points(14), makeMeaningLines(m_theme, head, this));
}

void WordDetail::addSections()
{
    const WordEntry &entry = m_facts.entry;
    const int gap = m_theme.points(betweenSections);
    auto *family = new FamilySection(m_parts, m_facts, this);
    connect(family, &FamilySection::wordChosen, this, &WordDetail::wordChosen);
    addBelow(m_rows, gap, family);
    if (!entry.formSlots().isEmpty())
        addBelow(m_rows, gap, new FormGallery(m_parts, entry, this));
    const auto addSection = [&](const QString &title, const QList<QWidget *> &records) {
        if (records.isEmpty())
            return;
        addBelow(m_rows, gap, makeSectionTitle(m_theme, title, {}, this));
        for (QWidget *record : records)
            addBelow(m_rows, m_theme.points(record == records.first() ? belowTitle : 12), record);
    };
    QList<QWidget *> examples;
    for (const Example &example : entry.examples)
        examples.append(makeExample(example));
    addSection(u"例句"_s, examples);
    QList<QWidget *> notes;
    for (const AINote &note : entry.notes.value_or(QList<AINote>()))
        notes.append(new NoteView(
            m_parts, note, false,
            [&words = m_parts.words, id = note.id, wordId = entry.id] { words.deleteNote(id, wordId); },
            this));
    addSection(u"AI 解释"_s, notes);
    if (const QString mnemonic = entry.mnemonic.value_or(QString()); !mnemonic.isEmpty())
        addBelow(m_rows, gap, makeMnemonic(mnemonic));
}

QWidget *WordDetail::makeExample(const Example &example)
{
    auto *record = new QWidget(this);
    auto *content = new QWidget(record);
    auto *column = bareLayout<QVBoxLayout>(content, 0);
    column->addWidget(
        makeSentence(m_theme, example.sentence, m_facts.entry.formTexts(), example.sentenceZh, content));
    addBelow(column, m_theme.points(2),
        makeOrigin(m_theme, example.isGenerated ? u"AI 例句"_s : QString(), sourceOf(example), content));
    auto *speak = makeIconButton(m_theme, u"speakExample"_s, u"朗读"_s, Icon::speakerLine, 15);
    connect(speak, &QPushButton::clicked, this,
        [&speaker = m_parts.speaker, text = example.sentence] { speaker.speak(text); });
    auto *remove = makeIconButton(
        m_theme, u"deleteExample"_s, u"删掉这条例句（比如它其实不是一个句子）"_s, Icon::trash, 15);
    connect(remove, &QPushButton::clicked, this,
        [&words = m_parts.words, id = example.id, wordId = m_facts.entry.id] {
            words.deleteExample(id, wordId);
        });
    fillRecord(record, m_theme, content, {speak, remove});
    return record;
}

QWidget *WordDetail::makeMnemonic(const QString &text)
{
    auto *holder = new QWidget(this);
    auto *column = bareLayout<QVBoxLayout>(holder, m_theme.points(belowTitle));
    auto *title = bareLayout<QHBoxLayout>(nullptr, m_theme.points(6));
    title->addWidget(makeIconLabel(m_theme, Icon::brain, 15, m_theme.tintText(Tint::purple)));
    QLabel *name = makeCapsule(m_theme, u"换个记法"_s, Tint::purple);
    name->setObjectName(u"sectionTitle"_s);
    title->addWidget(name);
    title->addStretch();
    column->addLayout(title);
    column->addWidget(makeReadText(m_theme, u"mnemonic"_s, u"换个记法"_s, text, {}, holder));
    return holder;
}

} // namespace nimbrelle
