#include "shell/MenuBarText.h"

#include "review/Letters.h"

#include <algorithm>

namespace nimbrelle::MenuBarText {

namespace {

// Lines that are filled piece by piece.
class Filler {
public:
    explicit Filler(qsizetype width) : m_width(std::max<qsizetype>(width, 1)) { }

    void add(QStringList piece)
    {
        while (piece.size() > m_width) {
            close();
            m_lines.append(piece.mid(0, m_width).join(QString()));
            piece = piece.mid(m_width);
        }
        if (m_length > 0 && m_length + 1 + piece.size() > m_width)
            close();
        if (m_length > 0)
            put(Letters::blank, 1);
        put(piece.join(QString()), piece.size());
    }

    QString text()
    {
        close();
        return m_lines.join(u'\n');
    }

private:
    void put(const QString &text, qsizetype length)
    {
        m_line += text;
        m_length += length;
    }

    void close()
    {
        if (m_length > 0)
            m_lines.append(std::exchange(m_line, QString()));
        m_length = 0;
    }

    const qsizetype m_width;
    QStringList m_lines;
    QString m_line;
    qsizetype m_length = 0;
};

QStringList formsToFind(const WordEntry &entry)
{
    QStringList forms{entry.headword};
    forms += entry.inflections.value_or(QMap<QString, QString>()).values();
    for (const FormRecord &record : entry.forms.value_or(QList<FormRecord>()))
        forms.append(record.form);
    return WordPattern::longestFirst(forms);
}

// Reaches the forms that the record doesn't know: deprecate finds Deprecated.
std::optional<TextRange> stemRange(const QString &headword, const QString &text)
{
    constexpr qsizetype shortestStem = 4;
    QString stem = headword.toLower();
    if (characterCount(stem) < shortestStem || stem.contains(u' '))
        return std::nullopt;
    if (stem.endsWith(u'e'))
        stem.chop(1);
    return WordPattern::firstMatch(WordPattern::beginningWith(stem), text);
}

} // namespace

QString title(const QString &headword)
{
    constexpr qsizetype longest = 16;
    if (characterCount(headword) <= longest)
        return headword;
    return firstCharacters(headword, longest - 1) + u'…';
}

std::optional<QString> sentence(const WordEntry &entry)
{
    QList<Example> examples;
    std::copy_if(entry.examples.begin(), entry.examples.end(), std::back_inserter(examples),
        [](const Example &example) { return !example.isGenerated; });
    if (examples.isEmpty())
        examples = entry.examples;
    if (examples.isEmpty())
        return std::nullopt;
    return std::max_element(examples.cbegin(), examples.cend(), [](const Example &a, const Example &b) {
        return a.addedAt < b.addedAt;
    })->sentence;
}

QString wrap(const QString &text, qsizetype width)
{
    Filler lines(width);
    for (const QStringList &piece : Letters::splitAtBlanks(characters(text)))
        lines.add(piece);
    return lines.text();
}

std::optional<TextRange> highlightRange(const WordEntry &entry, const QString &text)
{
    for (const QString &form : formsToFind(entry)) {
        const auto expression = WordPattern::whole(form, WordPattern::Blanks::anySpace);
        if (const auto range = WordPattern::firstMatch(expression, text))
            return range;
    }
    return stemRange(entry.headword, text);
}

std::optional<SentenceTitle> sentenceTitle(const WordEntry &entry)
{
    const auto found = sentence(entry);
    if (!found)
        return std::nullopt;
    const QString wrapped = wrap(*found, sentenceWrapWidth);
    return SentenceTitle{wrapped, highlightRange(entry, wrapped)};
}

} // namespace nimbrelle::MenuBarText
