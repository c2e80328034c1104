#include "export/WordsFile.h"

#include "export/ChosenFile.h"
#include "export/CsvWords.h"
#include "frame/Failure.h"
#include "frame/Text.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QStringDecoder>

#include <algorithm>

namespace nimbrelle::WordsFile {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestFile = 8 << 20;
const QString tooLarge = u"这个文件太大，不像是词表"_s;
constexpr qsizetype mostWords = 20000;
constexpr qsizetype longestWord = 60;

QString textOf(QByteArrayView bytes)
{
    // By its byte order mark, as spreadsheets write it.
    const auto marked = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(marked.value_or(QStringConverter::Utf8));
    QString text = decoder(bytes);
    const bool isCut = !marked && !QUtf8StringView(bytes).isValidUtf8();
    if (decoder.hasError() || isCut || text.contains(QChar::Null))
        throw Failure(u"这个文件不是 UTF-8 文本，请另存为 UTF-8 再导入"_s);
    return text;
}

/// What no text holds: a list without columns.
constexpr QChar noSeparator = QChar::Null;

/// The rows of a table, as RFC 4180 has them but for the separator; a line end of any kind ends a row.
/// Without a separator each line is taken as it stands.
class Rows {
public:
    Rows(QStringView text, QChar separator) : m_text(text), m_separator(separator) { }

    bool isAtEnd() const { return m_at >= m_text.size(); }

    QStringList next()
    {
        QStringList cells;
        do
            cells.append(cell());
        while (takes(m_separator));
        takes(u'\r');
        takes(u'\n');
        return cells;
    }

private:
    bool takes(QChar c)
    {
        const bool isThere = !isAtEnd() && m_text[m_at] == c;
        m_at += isThere ? 1 : 0;
        return isThere;
    }

    bool isBetweenCells() const
    {
        return isAtEnd() || m_text[m_at] == m_separator || m_text[m_at] == u'\n' || m_text[m_at] == u'\r';
    }

    QString cell()
    {
        QString text = m_separator != noSeparator && takes(u'"') ? quoted() : QString();
        const qsizetype begin = m_at;
        while (!isBetweenCells())
            ++m_at;
        return text += m_text.sliced(begin, m_at - begin);
    }

    QString quoted()
    {
        QString text;
        while (!isAtEnd()) {
            const QChar c = m_text[m_at++];
            if (c == u'"' && !takes(u'"'))
                break;
            text.append(c);
        }
        return text;
    }

    QStringView m_text;
    QChar m_separator;
    qsizetype m_at = 0;
};

bool isRemark(const QStringList &row)
{
    return row.first().startsWith(u'#');
}

/// The one that parts the first row into most cells.
QChar separatorOf(QStringView text)
{
    QChar best = noSeparator;
    qsizetype most = 1;
    for (const QChar separator : {u'\t', u',', u';'}) {
        Rows rows(text, separator);
        QStringList first{QString()};
        while (!rows.isAtEnd() && (first.first().isEmpty() || isRemark(first)))
            first = rows.next();
        if (first.size() > most && !isRemark(first)) {
            best = separator;
            most = first.size();
        }
    }
    return best;
}

std::optional<qsizetype> columnOfWords(const QStringList &headings)
{
    static const QStringList known{u"单词"_s, u"生词"_s, u"词"_s, u"英文"_s, u"正面"_s, u"word"_s, u"words"_s,
        u"headword"_s, u"term"_s, u"english"_s, u"expression"_s, u"front"_s};
    for (qsizetype i = 0; i < headings.size(); ++i) {
        if (known.contains(trimmedSpace(headings[i]).toLower()))
            return i;
    }
    return std::nullopt;
}

QString wordOf(const QString &cell)
{
    return withoutControls(CsvWords::withoutGuard(cell).simplified()).simplified();
}

QString characterOf(const QString &entity)
{
    static const QHash<QString, QString> named{{u"amp"_s, u"&"_s}, {u"lt"_s, u"<"_s}, {u"gt"_s, u">"_s},
        {u"quot"_s, u"\""_s}, {u"apos"_s, u"'"_s}, {u"nbsp"_s, u" "_s}};
    if (!entity.startsWith(u'#'))
        return named.value(entity, u'&' + entity + u';');
    const bool isHex = entity.size() > 1 && entity[1].toLower() == u'x';
    const char32_t code = QStringView(entity).sliced(isHex ? 2 : 1).toUInt(nullptr, isHex ? 16 : 10);
    const bool isCharacter = code > 0 && code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
    return isCharacter ? QString::fromUcs4(&code, 1) : QString();
}

/// A tag within a word, such as one that makes some letters bold, leaves it whole.
QString plainText(QString html)
{
    static const QRegularExpression lineTag(u"</?(?:br|div|p|li|ul|ol|tr|td|th|table|h[1-6])\\b[^<>]*>"_s,
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tag(u"</?[a-zA-Z!][^<>]*>"_s);
    static const QRegularExpression entity(u"&(#[xX][0-9a-fA-F]{1,6}|#[0-9]{1,7}|[a-z]{2,4});"_s);
    html.replace(lineTag, u" "_s).remove(tag);
    QString text;
    qsizetype end = 0;
    for (auto all = entity.globalMatch(html); all.hasNext();) {
        const QRegularExpressionMatch each = all.next();
        text.append(QStringView(html).sliced(end, each.capturedStart() - end))
            .append(characterOf(each.captured(1)));
        end = each.capturedEnd();
    }
    return text.append(QStringView(html).sliced(end));
}

/// What the header lines of one of Anki's text files say.
class AnkiHeader {
public:
    void read(const QString &line)
    {
        static const QRegularExpression column(u"^#(?:guid|tags|deck|notetype) column:([0-9]{1,3})$"_s);
        if (const auto match = column.match(line.trimmed()); match.hasMatch())
            m_notText.insert(match.captured(1).toInt() - 1);
        m_isHtml |= line.trimmed().compare(u"#html:true"_s, Qt::CaseInsensitive) == 0;
    }

    qsizetype firstText() const
    {
        qsizetype column = 0;
        while (m_notText.contains(column))
            ++column;
        return column;
    }

    /// The word is the gap of a cloze, else all of the field.
    QString text(const QString &field) const
    {
        static const QRegularExpression gap(u"\\{\\{c[0-9]+::(.*?)(?:::.*?)?\\}\\}"_s);
        const auto match = gap.match(field);
        const QString text = match.hasMatch() ? match.captured(1) : field;
        return m_isHtml ? plainText(text) : text;
    }

private:
    QSet<qsizetype> m_notText;
    bool m_isHtml = false;
};

bool isWord(const QString &text)
{
    return std::ranges::any_of(text, [](QChar c) { return c.isLetter(); })
        && characterCount(text) <= longestWord;
}

class Collector {
public:
    void take(const QString &cell)
    {
        const QString word = wordOf(cell);
        if (word.isEmpty())
            return;
        if (!isWord(word)) {
            ++m_words.skipped;
        } else if (const QString key = word.toLower(); !m_seen.contains(key)) {
            m_seen.insert(key);
            m_words.words.append(word);
        }
        if (m_words.words.size() > mostWords)
            throw Failure(u"一次最多导入 %1 个词"_s.arg(mostWords));
    }

    Words words() && { return std::move(m_words); }

private:
    QSet<QString> m_seen;
    Words m_words;
};

} // namespace

Words parse(QByteArrayView bytes)
{
    if (bytes.size() > largestFile)
        throw Failure(tooLarge);
    const QString text = textOf(bytes);
    const QChar separator = separatorOf(text);
    Rows rows(text, separator);
    Collector collector;
    AnkiHeader anki;
    std::optional<qsizetype> column;
    bool isFirst = separator != noSeparator;
    while (!rows.isAtEnd()) {
        QStringList row = rows.next();
        const bool isAnkiHeading = row.first().startsWith(u"#columns:"_s);
        if (isAnkiHeading)
            row.first().remove(u"#columns:"_s);
        const bool isHeading = isAnkiHeading || (isFirst && !isRemark(row) && columnOfWords(row));
        if (isHeading)
            column = columnOfWords(row);
        else if (isRemark(row))
            anki.read(row.first());
        else
            collector.take(anki.text(row.value(column.value_or(anki.firstText()))));
        isFirst = isFirst && isRemark(row);
    }
    return std::move(collector).words();
}

Words read(const QString &file)
{
    Words words = parse(readChosenFile(file, largestFile, tooLarge));
    if (words.words.isEmpty())
        throw Failure(u"这个文件里没有找到单词"_s);
    return words;
}

QString addedText(const Words &words, qsizetype waiting)
{
    QString text = u"%1 个词等着查"_s.arg(waiting);
    if (const qsizetype known = words.words.size() - waiting; known > 0)
        text += u"，%1 个已经在生词本里"_s.arg(known);
    if (words.skipped > 0)
        text += u"，跳过 %1 行不是单词的内容"_s.arg(words.skipped);
    return text;
}

} // namespace nimbrelle::WordsFile
