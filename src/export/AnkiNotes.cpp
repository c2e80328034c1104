#include "export/AnkiNotes.h"

#include "export/WordTexts.h"
#include "frame/WordPattern.h"
#include "review/ReviewQuestion.h"

namespace nimbrelle::AnkiNotes {

using namespace Qt::StringLiterals;

namespace {

/// Nothing that HTML, the file or Anki's own marks would take for theirs: no quotation mark (so that no field
/// needs quoting), tab or line end, and neither the braces of a cloze nor the bracket of [sound:].
QString html(QStringView text)
{
    QString result;
    result.reserve(text.size() + text.size() / 8);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        switch (c.unicode()) {
        case u'&':
            result += "&amp;"_L1;
            break;
        case u'<':
            result += "&lt;"_L1;
            break;
        case u'>':
            result += "&gt;"_L1;
            break;
        case u'"':
            result += "&quot;"_L1;
            break;
        case u'\r':
            if (i + 1 < text.size() && text[i + 1] == u'\n')
                break;
            [[fallthrough]];
        case u'\n':
        case QChar::LineSeparator:
        case QChar::ParagraphSeparator:
            result += "<br>"_L1;
            break;
        case u'\'':
        case u'\t':
        case u'{':
        case u'}':
        case u'[':
            result += "&#"_L1 + QString::number(c.unicode()) + u';';
            break;
        default:
            if (c.unicode() >= u' ')
                result += c;
        }
    }
    return result;
}

/// Two colons in a gap would begin its hint.
QString gap(QStringView text)
{
    return u"{{c1::"_s + html(text).replace(u':', "&#58;"_L1) + u"}}"_s;
}

QString bold(QStringView text)
{
    return u"<b>"_s + html(text) + u"</b>"_s;
}

/// `sentence` with the word as `mark` shows it, wherever it stands.
QString marked(const QString &sentence, const WordEntry &word, QString (*mark)(QStringView text))
{
    QString result;
    qsizetype end = 0;
    for (const TextRange &range : WordPattern::wholeOccurrences(sentence, word.formTexts())) {
        result += html(QStringView(sentence).sliced(end, range.start - end))
            + mark(QStringView(sentence).sliced(range.start, range.length));
        end = range.start + range.length;
    }
    return result + html(QStringView(sentence).sliced(end));
}

QString sourceLink(const Example &example)
{
    const QString name = html(WordTexts::sourceName(example));
    const QString address = example.sourceURL.value_or(QString());
    const bool isWeb = address.startsWith(u"http://"_s) || address.startsWith(u"https://"_s);
    return isWeb ? u"<a href='"_s + html(address) + u"'>"_s + name + u"</a>"_s : name;
}

/// Anki parts tags by blanks.
QString tagsOf(const WordEntry &word, const AppConfig &config, Timestamp now)
{
    return u"Nimbrelle Nimbrelle::"_s + label(word.displayStage(config, now));
}

/// Of the headword, which stays when the word is deleted and taken back, or merged with that of another
/// device; its id does not.
QString noteId(const WordEntry &word)
{
    static const QUuid ofNotes(u"6b1f4c52-8a0e-4f0b-9d55-2f7c1f6f7a10"_s);
    const QUuid id = QUuid::createUuidV5(ofNotes, headwordKey(word.headword));
    return u"nimbrelle-"_s + id.toString(QUuid::WithoutBraces);
}

QStringList cardFields(const WordEntry &word, const Example &example)
{
    return {html(word.headword), html(word.phonetic), html(word.meaningZh),
        marked(example.sentence, word, bold), html(example.sentenceZh), html(WordTexts::forms(word)),
        sourceLink(example)};
}

/// A word that its sentence does not hold, or that has none, is asked for by its meaning.
QString gapText(const WordEntry &word, const Example &example)
{
    QString sentence = marked(example.sentence, word, gap);
    if (sentence.contains("{{c1::"_L1))
        return sentence;
    return html(word.meaningZh) + u' ' + gap(word.headword);
}

QStringList clozeFields(const WordEntry &word, const Example &example)
{
    QStringList back{QStringList{bold(word.headword), html(word.phonetic)}.join(u' ').trimmed(),
        html(word.meaningZh), html(example.sentenceZh), html(WordTexts::forms(word)), sourceLink(example)};
    back.removeAll(QString());
    return {gapText(word, example), back.join("<br>"_L1)};
}

/// Columns with names go to the fields of those names, in a note type of the reader's own. Without, they go
/// to the fields in their order, as they have to for Anki's own cloze type, whose names differ from language
/// to language.
QByteArray header(Variant variant)
{
    const bool isCloze = variant == Variant::cloze;
    const QStringList names{
        u"标识"_s, u"单词"_s, u"音标"_s, u"释义"_s, u"例句"_s, u"译文"_s, u"词形"_s, u"来源"_s, u"标签"_s};
    constexpr qsizetype clozeColumns = 4;
    QStringList lines{u"#separator:tab"_s, u"#html:true"_s};
    if (!isCloze)
        lines.append(u"#columns:"_s + names.join(u'\t'));
    lines.append(u"#guid column:1"_s);
    lines.append(u"#tags column:"_s + QString::number(isCloze ? clozeColumns : names.size()));
    return (lines.join(u'\n') + u'\n').toUtf8();
}

} // namespace

QByteArray text(const QList<WordEntry> &entries, Variant variant, const AppConfig &config, Timestamp now)
{
    const bool isCloze = variant == Variant::cloze;
    QByteArray bytes = header(variant);
    for (const WordEntry &word : entries) {
        const Example example = ReviewQuestion::example(word).value_or(Example{});
        const QString id = noteId(word) + (isCloze ? u"-cloze"_s : QString());
        const QStringList fields = isCloze ? clozeFields(word, example) : cardFields(word, example);
        bytes +=
            (QStringList{id} + fields + QStringList{tagsOf(word, config, now)}).join(u'\t').toUtf8() + '\n';
    }
    return bytes;
}

} // namespace nimbrelle::AnkiNotes
