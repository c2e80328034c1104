#include "export/GrowthSections.h"

#include "export/GrowthCharts.h"
#include "export/GrowthTexts.h"

#include <algorithm>
#include <cmath>

namespace nimbrelle::growth {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype shownWords = 3;

/// A picture of a few answers would look as if they said something.
bool isDrawn(const RecallBand &band)
{
    return band.verdict() != RecallBand::Verdict::tooFew;
}

/// Where the scale of the shares begins: at a round tenth, so that differences near 1 can be seen.
double scaleStart(const QList<RecallBand> &bands)
{
    double least = 1;
    for (const RecallBand &band : bands) {
        if (isDrawn(band))
            least = std::min({least, band.low, band.predicted});
    }
    return std::clamp(std::floor(least * 10) / 10, 0.0, 0.9);
}

QString bandItem(const RecallBand &band, double from)
{
    const QString numbers = u"估计 %1；%2"_s.arg(percent(band.predicted), observedText(band));
    const charts::Share share{.title = u"%1：%2"_s.arg(stabilityText(band), numbers),
        .from = from,
        .low = band.low,
        .high = band.high,
        .seen = band.observed(),
        .expected = band.predicted};
    return u"<b>"_s + stabilityText(band) + u"</b>"_s + paragraph(numbers)
        + (isDrawn(band) ? charts::share(share) : QString()) + note(verdictText(band.verdict()));
}

QString shareKey(double from)
{
    return list(u"key"_s,
        {u"<i class=\"seen\"></i>真的想起来的"_s, u"<i class=\"guess\"></i>估计的"_s,
            u"<i class=\"span\"></i>多半落在这一段里"_s, u"横条从 %1 到 100%"_s.arg(percent(from))});
}

QString wordsText(const QStringList &words)
{
    QStringList shown;
    for (const QString &word : words.mid(0, shownWords))
        shown.append(escaped(word));
    return shown.join(u"、"_s) + (words.size() > shownWords ? u" 等 %1 个"_s.arg(words.size()) : QString());
}

QString formsPart(const GrowthCollection &collection)
{
    QStringList chips;
    for (const GrowthCollection::Form &form : collection.forms)
        chips.append(u"<b>%1</b> <small>%2 个词</small>"_s.arg(label(form.kind), QString::number(form.met)));
    return u"<h3>词形</h3>\n"_s
        + paragraph(u"存下的词一共有 %1 种词形，其中 %2 种已经在真的句子里遇到。"_s.arg(collection.formsKnown)
                        .arg(collection.formsMet))
        + list(u"chips"_s, chips);
}

QString affixesPart(const GrowthCollection &collection)
{
    QStringList chips;
    for (const GrowthCollection::Affixed &affix : collection.affixes)
        chips.append(u"<b>%1</b> %2 <small>%3</small>"_s.arg(
            displayForm(affix.affix), meaning(affix.affix).toHtmlEscaped(), wordsText(affix.words)));
    return u"<h3>词缀</h3>\n"_s
        + paragraph(u"%1 个词缀里遇到了 %2 个。"_s.arg(caseCount<Affix>).arg(collection.affixes.size()))
        + list(u"chips"_s, chips);
}

QString grammarPart(const GrowthCollection &collection)
{
    QStringList chips;
    for (const GrowthCollection::Grammar &grammar : collection.grammar)
        chips.append(
            u"<b>%1</b> <small>%2 句</small>"_s.arg(label(grammar.point), QString::number(grammar.met)));
    return u"<h3>语法点</h3>\n"_s
        + paragraph(
            u"%1 个语法点里遇到了 %2 个。"_s.arg(caseCount<GrammarPoint>).arg(collection.grammar.size()))
        + list(u"chips"_s, chips);
}

QString sentenceHtml(const PastSentence &past)
{
    QString sentence;
    for (const MarkedPiece &piece : past.sentence) {
        // A blank at the edge of a piece belongs to the sentence.
        const QString lead = piece.text.front().isSpace() ? u" "_s : QString();
        const QString trail = piece.text.back().isSpace() ? u" "_s : QString();
        const QString text = lead + escaped(piece.text) + trail;
        sentence += piece.isWord ? u"<b>"_s + text + u"</b>"_s : text;
    }
    QString html = u"<p lang=\"en\">"_s + sentence + u"</p>"_s;
    if (!past.translation.isEmpty())
        html += u"<p class=\"zh\">"_s + escaped(past.translation) + u"</p>"_s;
    QStringList facts{dayText(past.day)};
    if (!past.headword.isEmpty())
        facts.append(escaped(past.headword) + u" "_s + escaped(past.meaning));
    if (!past.place.isEmpty())
        facts.append(u"来自 "_s + escaped(past.place));
    return u"<blockquote>"_s + html + note(facts.join(u" · "_s)) + u"</blockquote>\n"_s;
}

} // namespace

QString recallSection(const GrowthRecall &recall)
{
    const QString title = u"能记多久"_s;
    if (recall.bands.isEmpty())
        return section(title, paragraph(u"还没有隔了一天以上的复习。有了以后，这里会看到估计得准不准。"_s));
    const double from = scaleStart(recall.bands);
    QStringList items;
    for (const RecallBand &band : recall.bands)
        items.append(bandItem(band, from));
    QString html =
        paragraph(u"每次复习前，程序都估过一个词这时还想得起来的可能。下面把估计的和真的想起来的放在一起，"
                  u"按词当时能记多久分开。"_s)
        + (std::ranges::any_of(recall.bands, isDrawn) ? shareKey(from) : QString()) + list(u"bands"_s, items)
        + note(u"一共 %1 次回答，都隔了一天以上；不是「没想起来」就算想起来了。"_s.arg(recall.answers));
    if (recall.untraced > 0)
        html += note(u"另有 %1 次回答，词的经过记录不全，没有算。"_s.arg(recall.untraced));
    return section(title, html);
}

QString collectionSection(const GrowthCollection &collection)
{
    QString html;
    if (!collection.forms.isEmpty())
        html += formsPart(collection);
    if (!collection.affixes.isEmpty())
        html += affixesPart(collection);
    if (!collection.grammar.isEmpty())
        html += grammarPart(collection);
    if (html.isEmpty())
        html = paragraph(u"遇到的词形、词缀和语法点会收在这里。"_s);
    return section(u"词形、词缀和语法点"_s, html);
}

QString sourcesSection(const GrowthSources &sources)
{
    const QString title = u"在哪里读到的"_s;
    if (sources.places.isEmpty())
        return section(title, paragraph(u"还没有记下来源的词。"_s));
    const auto most = static_cast<double>(sources.places.first().words);
    QStringList items;
    for (const GrowthSources::Place &place : sources.places)
        items.append(u"<p><span>%1</span> <small>%2 个词</small></p>"_s.arg(
                         escaped(place.name), QString::number(place.words))
            + charts::length(static_cast<double>(place.words) / most));
    QString html = list(u"places"_s, items);
    if (sources.others > 0)
        html += note(u"还有别的 %1 处。"_s.arg(sources.others));
    return section(title, html);
}

QString memoriesSection(const GrowthMemories &memories)
{
    const QString title = u"一年前的这几天"_s;
    QString html;
    for (const PastSentence &sentence : memories.sentences)
        html += sentenceHtml(sentence);
    if (html.isEmpty())
        html = paragraph(memories.firstOn
                ? u"第一个句子到 %1满一年，到时候会出现在这里。"_s.arg(dayText(*memories.firstOn))
                : u"一年前的这几天没有留下句子。"_s);
    return section(title, html);
}

} // namespace nimbrelle::growth
