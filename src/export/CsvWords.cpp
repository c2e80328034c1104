#include "export/CsvWords.h"

#include "coach/LocalTimes.h"
#include "export/WordTexts.h"

#include <algorithm>

namespace nimbrelle::CsvWords {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";

/// A spreadsheet takes a cell that begins with one of these for a formula, also behind blanks, and the text
/// may come from any page that was read. Such a cell gets an apostrophe in front, the spreadsheets' own sign
/// for "this is text"; all others stay as they are.
bool readsAsFormula(QStringView text)
{
    const auto first = std::ranges::find_if_not(text, [](QChar c) { return c.isSpace(); });
    return first != text.end() && QStringView(u"=+-@＝＋－＠").contains(*first);
}

class Table {
public:
    explicit Table(qsizetype words)
    {
        constexpr qsizetype usualRow = 1200;
        m_bytes.reserve(words * usualRow);
        m_bytes.append(byteOrderMark);
    }

    /// Always in quotation marks, so that no separator of another locale opens a cell inside it.
    void cell(const QString &text)
    {
        separate();
        m_bytes.append(readsAsFormula(text) ? "\"'" : "\"");
        QByteArray utf8 = text.toUtf8();
        if (utf8.contains('"'))
            utf8.replace('"', "\"\"");
        m_bytes.append(utf8).append('"');
    }
    void cell(const std::optional<QString> &text) { cell(text.value_or(QString())); }
    void cell(bool value) { cell(value ? u"是"_s : QString()); }
    void cell(qint64 number)
    {
        separate();
        m_bytes.append(QByteArray::number(number));
    }
    void cell(const std::optional<qint64> &number)
    {
        if (number)
            cell(*number);
        else
            separate();
    }
    void cell(const std::optional<double> &number)
    {
        separate();
        if (number)
            m_bytes.append(QByteArray::number(*number, 'f', 2));
    }
    void cell(const std::optional<Timestamp> &time)
    {
        separate();
        if (time)
            m_bytes.append(localText(*time).toLatin1());
    }
    /// Such as 2026-03-01 16:30:05.
    QString localText(Timestamp time)
    {
        const auto text = isoCharacters(time + m_times.offsetAt(time));
        constexpr qsizetype withoutZone = 19;
        return QString::fromLatin1(text.data(), withoutZone).replace(u'T', u' ');
    }
    void endRow()
    {
        m_bytes.append("\r\n");
        m_isRowBegun = false;
    }

    QByteArray bytes() && { return std::move(m_bytes); }

private:
    void separate()
    {
        if (m_isRowBegun)
            m_bytes.append(',');
        m_isRowBegun = true;
    }

    LocalTimes m_times;
    QByteArray m_bytes;
    bool m_isRowBegun = false;
};

/// Numbered where there is more than one, so that the cells of one word can be read side by side.
template <class List, class TextOf> QString lines(const List &list, TextOf textOf)
{
    if (list.size() == 1)
        return textOf(list.first());
    QStringList texts;
    for (const auto &each : list)
        texts.append(QString::number(texts.size() + 1) + u". "_s + textOf(each));
    return texts.join(u'\n');
}

struct Column {
    QString heading;
    void (*write)(Table &table, const WordEntry &word, const AppConfig &config, Timestamp now);
};

template <auto Member> void plain(Table &table, const WordEntry &word, const AppConfig &, Timestamp)
{
    table.cell(word.*Member);
}

template <auto Member> void examples(Table &table, const WordEntry &word, const AppConfig &, Timestamp)
{
    table.cell(lines(word.examples, [](const Example &example) { return example.*Member; }));
}

template <auto Member> void reviews(Table &table, const WordEntry &word, const AppConfig &, Timestamp)
{
    table.cell(word.review ? std::optional((*word.review).*Member) : std::nullopt);
}

void stage(Table &table, const WordEntry &word, const AppConfig &config, Timestamp now)
{
    table.cell(label(word.displayStage(config, now)));
}

void exampleSources(Table &table, const WordEntry &word, const AppConfig &, Timestamp)
{
    table.cell(lines(word.examples, [](const Example &example) { return WordTexts::source(example); }));
}

template <class TextOf> void notes(Table &table, const WordEntry &word, TextOf textOf)
{
    table.cell(lines(word.notes.value_or(QList<AINote>()), textOf));
}

void days(Table &table, const WordEntry &word, const AppConfig &, Timestamp)
{
    table.cell(word.days().join(u' '));
}

const QList<Column> &columns()
{
    static const QList<Column> all{
        {u"单词"_s, plain<&WordEntry::headword>},
        {u"音标"_s, plain<&WordEntry::phonetic>},
        {u"词性"_s, plain<&WordEntry::pos>},
        {u"释义"_s, plain<&WordEntry::meaningZh>},
        {u"英文释义"_s, plain<&WordEntry::definitionEn>},
        {u"语体"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(label(word.register_));
            }},
        {u"语体说明"_s, plain<&WordEntry::registerNoteZh>},
        {u"状态"_s, stage},
        {u"例句"_s, examples<&Example::sentence>},
        {u"例句译文"_s, examples<&Example::sentenceZh>},
        {u"例句里的意思"_s, examples<&Example::meaningZh>},
        {u"例句来源"_s, exampleSources},
        {u"例句时间"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(lines(word.examples,
                    [&table](const Example &example) { return table.localText(example.addedAt); }));
            }},
        {u"词形"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(WordTexts::forms(word));
            }},
        {u"遇到过的词形"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(WordTexts::metForms(word));
            }},
        {u"词形第一次遇到"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(lines(word.forms.value_or(QList<FormRecord>()), [&table](const FormRecord &form) {
                    return QStringList{
                        form.form, table.localText(form.firstSeenAt), form.sentence.value_or(QString())}
                        .join(u' ')
                        .trimmed();
                }));
            }},
        {u"词根"_s, plain<&WordEntry::familyRoot>},
        {u"词缀"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(displayForms(word.affixes.value_or(QList<Affix>())).join(u"，"_s));
            }},
        {u"换个记法"_s, plain<&WordEntry::mnemonic>},
        {u"AI 解释"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                notes(table, word, [](const AINote &note) { return note.question + u'\n' + note.answer; });
            }},
        {u"AI 解释的原文"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                notes(table, word, [](const AINote &note) {
                    return QStringList{note.original, note.translation.value_or(QString())}
                        .join(u'\n')
                        .trimmed();
                });
            }},
        {u"AI 解释的来源"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                notes(table, word, [](const AINote &note) { return WordTexts::source(note); });
            }},
        {u"AI 解释的时间"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                notes(table, word, [&table](const AINote &note) { return table.localText(note.addedAt); });
            }},
        {u"来源"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(word.sourceKeys.value_or(QStringList()).join(u"，"_s));
            }},
        {u"查过几次"_s, plain<&WordEntry::lookupCount>},
        {u"遇到的日子"_s, days},
        {u"保存时间"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(std::optional(word.createdAt));
            }},
        {u"上次查询"_s, plain<&WordEntry::lastLookupAt>},
        {u"想学"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(word.isWanted());
            }},
        {u"休息到"_s, plain<&WordEntry::restUntil>},
        {u"状态变于"_s, plain<&WordEntry::stateAt>},
        {u"复习过几次"_s, reviews<&ReviewState::reps>},
        {u"忘记过几次"_s, reviews<&ReviewState::lapses>},
        {u"复习等级"_s, reviews<&ReviewState::level>},
        {u"记忆强度（天）"_s, reviews<&ReviewState::stability>},
        {u"难度"_s, reviews<&ReviewState::difficulty>},
        {u"上次复习"_s, reviews<&ReviewState::lastReview>},
        {u"下次复习"_s, reviews<&ReviewState::due>},
        {u"常拼"_s,
            [](Table &table, const WordEntry &word, const AppConfig &, Timestamp) {
                table.cell(word.isSpellPractice());
            }},
        {u"拼写等级"_s, plain<&WordEntry::spellLevel>},
        {u"上次拼写"_s, plain<&WordEntry::lastSpelledAt>},
    };
    return all;
}

} // namespace

QString withoutGuard(const QString &cell)
{
    const bool isGuarded = cell.startsWith(u'\'') && readsAsFormula(QStringView(cell).sliced(1));
    return isGuarded ? cell.sliced(1) : cell;
}

QByteArray table(const QList<WordEntry> &entries, const AppConfig &config, Timestamp now)
{
    Table table(entries.size());
    for (const Column &column : columns())
        table.cell(column.heading);
    table.endRow();
    for (const WordEntry &word : entries) {
        for (const Column &column : columns())
            column.write(table, word, config, now);
        table.endRow();
    }
    return std::move(table).bytes();
}

} // namespace nimbrelle::CsvWords
