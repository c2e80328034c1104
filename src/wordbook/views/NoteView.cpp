#include "wordbook/views/NoteView.h"

#include "widgets/Controls.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"
#include "wordbook/WordFacts.h"
#include "wordbook/views/PaneParts.h"
#include "wordparts/WordParts.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace nimbrelle {

using namespace Qt::StringLiterals;

NoteView::NoteView(const WordbookParts &parts, const AINote &note, bool showOriginal,
    std::function<void()> onDelete, QWidget *parent)
    : QWidget(parent)
{
    setObjectName(u"note"_s);
    const Theme &theme = parts.theme;
    auto *remove = makeIconButton(theme, u"deleteNote"_s, u"删除这条解释"_s, Icon::trash, 15);
    connect(remove, &QPushButton::clicked, this, [onDelete = std::move(onDelete)] { onDelete(); });
    auto *content = new QWidget(this);
    fillMarked(content, theme, Icon::sparkles, Tone::accent, makeNote(theme, note, showOriginal, content));
    fillRecord(this, theme, content, {remove});
}

QWidget *NoteView::makeNote(const Theme &theme, const AINote &note, bool showOriginal, QWidget *parent)
{
    auto *holder = new QWidget(parent);
    auto *column = bareLayout<QVBoxLayout>(holder, 0);
    if (!note.question.isEmpty())
        column->addWidget(makeReadText(theme, u"question"_s, u"问题"_s, note.question,
            {.type = TextType::text, .weight = QFont::DemiBold}, holder));
    if (showOriginal) {
        QWidget *quote = makeQuote(theme, note.original, {}, note.translation.value_or(QString()));
        quote->setObjectName(u"original"_s);
        addBelow(column, theme.points(8), quote);
        addBelow(column, theme.points(4), makeOrigin(theme, {}, sourceOf(note)));
    }
    auto *answer =
        makeReadText(theme, u"answer"_s, u"解释"_s, {}, {.type = TextType::text, .pitch = 22}, holder);
    answer->setRuns(inlineMarkdown(note.answer));
    addBelow(column, theme.points(showOriginal ? 10 : 2), answer);
    return holder;
}

} // namespace nimbrelle
