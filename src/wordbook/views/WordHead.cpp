#include "wordbook/views/WordHead.h"

#include "widgets/Controls.h"
#include "widgets/FlowLayout.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"
#include "wordparts/WordParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// As high as the line of the word, and in its middle.
QWidget *centred(QWidget *widget, int height, QWidget *parent)
{
    auto *holder = new QWidget(parent);
    holder->setFixedHeight(height);
    bareLayout<QHBoxLayout>(holder, 0)->addWidget(widget, 0, Qt::AlignVCenter);
    return holder;
}

} // namespace

QWidget *makeHeadLine(
    const Theme &theme, Speaker &speaker, const WordHead &head, TextType type, QWidget *parent)
{
    const double pitch = Theme::pitch(type);
    auto *line = new QWidget(parent);
    auto *row = bareLayout<QHBoxLayout>(line, theme.points(10));
    auto *words = new QWidget(line);
    auto *flow = new FlowLayout(theme.points(4), 0, words);
    auto *word = new QWidget(words);
    auto *padded = bareLayout<QHBoxLayout>(word, 0);
    padded->setContentsMargins(0, 0, theme.points(4), 0); // the speaker button has padding of its own
    padded->addWidget(makeReadText(theme, u"headword"_s, u"单词"_s, head.headword, {.type = type}, word));
    flow->addWidget(word);
    if (!head.phonetic.isEmpty()) // of the word's own pitch, so that both share a base line
        flow->addWidget(makeReadText(theme, u"phonetic"_s, u"音标"_s, head.phonetic,
            {.type = TextType::small, .tone = Tone::ink2, .line = type}, words));
    flow->addWidget(
        centred(makeSpeakButton(theme, speaker, u"speakWord"_s, head.headword), theme.points(pitch), words));
    row->addWidget(words, 1, Qt::AlignTop);
    row->addWidget(
        centred(makeRegisterBadge(theme, head.register_), theme.points(pitch), line), 0, Qt::AlignTop);
    return line;
}

QWidget *makeMeaningLines(const Theme &theme, const WordHead &head, QWidget *parent)
{
    auto *lines = new QWidget(parent);
    auto *column = bareLayout<QVBoxLayout>(lines, theme.points(2));
    auto *row = bareLayout<QHBoxLayout>(nullptr, theme.points(8));
    if (!head.pos.isEmpty()) {
        auto *kind = makeReadText(theme, u"pos"_s, u"词性"_s, head.pos,
            {.type = TextType::small, .tone = Tone::ink2, .weight = QFont::Medium, .line = TextType::meaning},
            lines);
        kind->setFixedWidth(std::min(kind->naturalWidth(), theme.points(120)));
        row->addWidget(kind, 0, Qt::AlignTop);
    }
    row->addWidget(
        makeReadText(theme, u"meaning"_s, u"意思"_s, head.meaningZh, {.type = TextType::meaning}, lines));
    column->addLayout(row);
    if (!head.definitionEn.isEmpty())
        column->addWidget(makeReadText(theme, u"definition"_s, u"英文解释"_s, head.definitionEn,
            {.type = TextType::small, .tone = Tone::ink2}, lines));
    return lines;
}

} // namespace nimbrelle
