#include "wordbook/views/KnowledgeDetail.h"

#include "notebook/WordStore.h"
#include "platform/Speaker.h"
#include "widgets/Controls.h"
#include "widgets/FlowLayout.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"
#include "wordbook/views/PaneParts.h"
#include "wordparts/WordParts.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// The name, and beside it whether it is unlocked.
QWidget *makeTitle(const Theme &theme, const QString &name, bool isUnlocked, const QString &state)
{
    const double pitch = Theme::pitch(TextType::title);
    auto *holder = new QWidget;
    auto *flow = new FlowLayout(theme.points(10), 0, holder);
    flow->addWidget(makeReadText(theme, u"title"_s, u"名称"_s, name, {.type = TextType::title}));
    auto *mark = new QWidget;
    mark->setFixedHeight(theme.points(pitch));
    auto *row = bareLayout<QHBoxLayout>(mark, theme.points(8));
    row->addWidget(isUnlocked ? makeIconLabel(theme, Icon::sealCheck, 16, theme.colour(Tone::good))
                              : makeIconLabel(theme, Icon::lock, 14, theme.colour(Tone::ink2)));
    QLabel *text = makeLabel(theme, state, TextType::small, Tone::ink2);
    text->setObjectName(u"unlockState"_s);
    row->addWidget(text);
    flow->addWidget(mark);
    return holder;
}

void addNothing(const Theme &theme, QVBoxLayout *column, const QString &text)
{
    addBelow(column, theme.points(6),
        makeReadText(
            theme, u"noEncounters"_s, u"提示"_s, text, {.type = TextType::small, .tone = Tone::ink2}));
}

void addBehindLine(const Theme &theme, QVBoxLayout *column, QWidget *record)
{
    addBelow(column, theme.points(10), makeLine());
    addBelow(column, theme.points(10), record);
}

QWidget *makeMeeting(const Theme &theme, const AffixFacts::Meeting &meeting)
{
    auto *holder = new QWidget;
    auto *column = bareLayout<QVBoxLayout>(holder, 0);
    column->addWidget(makeReadText(theme, u"word"_s, u"单词"_s, meeting.encounter.headword,
        {.type = TextType::text, .weight = QFont::DemiBold}));
    column->addWidget(makeSentence(
        theme, meeting.encounter.sentence.value_or(QString()), meeting.forms, meeting.sentenceZh));
    return holder;
}

} // namespace

GrammarDetail::GrammarDetail(const WordbookParts &parts, const GrammarFacts &facts)
{
    setObjectName(u"grammarDetail"_s);
    const Theme &theme = parts.theme;
    auto *column = bareLayout<QVBoxLayout>(this, 0);
    const bool isUnlocked = facts.count > 0;
    column->addWidget(makeTitle(theme, label(facts.point), isUnlocked,
        isUnlocked ? u"遇到 %1 次"_s.arg(facts.count) : u"还没解锁"_s));
    addBelow(column, theme.points(8),
        makeReadText(
            theme, u"explanation"_s, u"说明"_s, explanation(facts.point), {.type = TextType::reading}));
    addBelow(column, theme.points(20), makeSectionTitle(theme, u"你遇到过的句子"_s));
    if (!isUnlocked)
        addNothing(theme, column,
            u"在真实句子里遇到它的时候（查已保存的词，或者保存新词时），就会自动解锁并收集到这里。"_s);
    else if (facts.encounters.isEmpty())
        addNothing(theme, column, u"没有找到"_s);
    for (const GrammarEncounter &met : facts.encounters)
        addBehindLine(theme, column, makeEncounter(parts, met));
    column->addStretch();
}

QWidget *GrammarDetail::makeEncounter(const WordbookParts &parts, const GrammarEncounter &met)
{
    const Theme &theme = parts.theme;
    auto *record = new QWidget;
    auto *content = new QWidget(record);
    auto *column = bareLayout<QVBoxLayout>(content, 0);
    column->addWidget(makeSentence(
        theme, met.sentence, {met.surface, met.headword}, met.sentenceZh.value_or(QString()), content));
    if (const QString note = met.noteZh.value_or(QString()); !note.isEmpty())
        addBelow(column, theme.points(2),
            makeReadText(theme, u"grammarNote"_s, u"语法说明"_s, note,
                {.type = TextType::small, .tone = Tone::accent}));
    addBelow(column, theme.points(2), makeOrigin(theme, {}, sourceOf(met)));
    auto *speak = makeIconButton(theme, u"speakExample"_s, u"朗读"_s, Icon::speakerLine, 15);
    connect(speak, &QPushButton::clicked, this,
        [&speaker = parts.speaker, text = met.sentence] { speaker.speak(text); });
    auto *remove = makeIconButton(theme, u"deleteEncounter"_s, u"删除这条记录"_s, Icon::trash, 15);
    connect(remove, &QPushButton::clicked, this,
        [&words = parts.words, id = met.id] { words.deleteGrammarEncounter(id); });
    fillRecord(record, theme, content, {speak, remove});
    return record;
}

AffixDetail::AffixDetail(const WordbookParts &parts, const AffixFacts &facts)
{
    setObjectName(u"affixDetail"_s);
    const Theme &theme = parts.theme;
    auto *column = bareLayout<QVBoxLayout>(this, 0);
    const bool isUnlocked = !facts.meetings.isEmpty();
    column->addWidget(makeTitle(theme, displayForm(facts.affix), isUnlocked,
        isUnlocked ? u"在 %1 个词里遇到"_s.arg(facts.meetings.size()) : u"还没解锁"_s));
    addBelow(column, theme.points(2),
        makeReadText(theme, u"meaning"_s, u"意思"_s, meaning(facts.affix), {.type = TextType::meaning}));
    addBelow(column, theme.points(6),
        makeReadText(theme, u"examples"_s, u"例词"_s, u"常见的词："_s + examples(facts.affix),
            {.type = TextType::small, .tone = Tone::ink2}));
    if (const QString others = variants(facts.affix); !others.isEmpty())
        addBelow(column, theme.points(2),
            makeReadText(
                theme, u"variants"_s, u"别的写法"_s, others, {.type = TextType::small, .tone = Tone::ink2}));
    addBelow(column, theme.points(18), makeSectionTitle(theme, u"你遇到过的词"_s));
    if (!isUnlocked)
        addNothing(theme, column, u"保存或再次查到一个带这个词缀的词时，就会自动解锁。"_s);
    for (const AffixFacts::Meeting &meeting : facts.meetings)
        addBehindLine(theme, column, makeMeeting(theme, meeting));
    column->addStretch();
}

} // namespace nimbrelle
