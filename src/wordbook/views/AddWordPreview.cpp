#include "wordbook/views/AddWordPreview.h"

#include "widgets/Controls.h"
#include "widgets/FlowLayout.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"
#include "wordbook/AddWordModel.h"
#include "wordbook/views/PaneParts.h"
#include "wordbook/views/WordHead.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double margin = 20;

WordHead headOf(const Explanation &explanation)
{
    return {.headword = explanation.headword,
        .phonetic = explanation.phonetic.value_or(QString()),
        .pos = explanation.pos.value_or(QString()),
        .register_ = registerFrom(explanation.register_),
        .meaningZh = explanation.meaningZh,
        .definitionEn = explanation.definitionEn.value_or(QString())};
}

} // namespace

AddWordPreview::AddWordPreview(const Theme &theme, AddWordModel &model, Speaker &speaker)
    : m_theme(theme), m_model(model)
{
    setProperty("kind", u"scrolled"_s);
    const LookupResult &result = *model.result();
    auto *rows = bareLayout<QVBoxLayout>(this, 0);
    const int side = theme.points(margin);
    rows->setContentsMargins(side, theme.points(14), side, theme.points(14));
    rows->addWidget(makeLine());
    if (const QString correction = model.correction(); !correction.isEmpty())
        addBelow(rows, theme.points(12),
            makeMarked(theme, Icon::pencil, Tone::ink2,
                makeReadText(theme, u"correction"_s, u"更正"_s, correction, {.type = TextType::small})));
    if (const QString about = result.aboutZh.value_or(QString()); !about.isEmpty())
        addBelow(rows, theme.points(12),
            makeReadText(theme, u"about"_s, u"说明"_s, about, {.type = TextType::small, .tone = Tone::ink2}));
    const WordHead head = headOf(result.explanation);
    addBelow(rows, theme.points(10), makeHeadLine(theme, speaker, head, TextType::headword));
    addBelow(rows, theme.points(6), makeMeaningLines(theme, head));
    const auto alternatives = result.alternatives.value_or(QList<LookupResult::Alternative>());
    if (!alternatives.isEmpty())
        addBelow(rows, theme.points(14), makeAlternatives(alternatives));
    rows->addStretch();
}

QWidget *AddWordPreview::makeAlternatives(const QList<LookupResult::Alternative> &alternatives)
{
    auto *holder = new QWidget;
    auto *rows = bareLayout<QVBoxLayout>(holder, m_theme.points(10));
    rows->addWidget(makeSectionTitle(m_theme, u"其他说法"_s));
    for (const LookupResult::Alternative &alternative : alternatives)
        rows->addWidget(makeAlternative(alternative));
    return holder;
}

QWidget *AddWordPreview::makeAlternative(const LookupResult::Alternative &alternative)
{
    auto *record = new QWidget;
    auto *words = new QWidget(record);
    auto *column = bareLayout<QVBoxLayout>(words, 0);
    column->setContentsMargins(0, m_theme.points(4), 0, m_theme.points(4)); // as high as the button
    auto *flow = new FlowLayout(m_theme.points(10), 0);
    flow->addWidget(makeReadText(m_theme, u"alternative"_s, u"其他说法"_s, alternative.text,
        {.type = TextType::text, .weight = QFont::Medium}));
    flow->addWidget(makeReadText(m_theme, u"alternativeMeaning"_s, u"区别"_s, alternative.meaningZh,
        {.type = TextType::small, .tone = Tone::ink2, .pitch = 20}));
    column->addLayout(flow);
    auto *look = makeButton(m_theme, u"lookupAlternative"_s, u"查这个说法"_s, {.kind = ButtonKind::soft});
    look->setAccessibleDescription(alternative.text);
    connect(look, &QPushButton::clicked, &m_model,
        [&model = m_model, text = alternative.text] { model.lookupAlternative(text); });
    fillRecord(record, m_theme, words, {look});
    return record;
}

} // namespace nimbrelle
