#include "export/CsvWords.h"

#include "frame/AppConfig.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::ElementsAre;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"});

/// By the letter of RFC 4180, its section 2; anything else fails the test.
QList<QStringList> rowsOf(QByteArray bytes)
{
    EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBF"));
    const QString text = QString::fromUtf8(bytes.mid(3));
    static const QRegularExpression cell(u"\\G(?:\"((?:[^\"]|\"\")*)\"|([^\",\\r\\n]*))(,|\\r\\n)"_s);
    QList<QStringList> rows;
    QStringList row;
    for (qsizetype at = 0; at < text.size();) {
        const auto match = cell.match(text, at);
        if (!match.hasMatch()) {
            ADD_FAILURE() << "no cell at " << at << " of " << text.toStdString();
            break;
        }
        row.append(match.hasCaptured(1) ? match.captured(1).replace(u"\"\""_s, u"\""_s) : match.captured(2));
        at = match.capturedEnd();
        if (match.captured(3) != u","_s)
            rows.append(std::exchange(row, {}));
    }
    return rows;
}

/// The cells of one word by their headings.
QMap<QString, QString> cellsOf(const WordEntry &word)
{
    const auto rows = rowsOf(CsvWords::table({word}, {}, now));
    QMap<QString, QString> cells;
    EXPECT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].size(), rows[1].size());
    for (qsizetype i = 0; i < rows[0].size(); ++i)
        cells[rows[0][i]] = rows[1].value(i);
    EXPECT_EQ(cells.size(), rows[0].size()) << "a heading stands twice";
    return cells;
}

WordEntry fullWord()
{
    WordEntry word = wordNamed(u"run"_s);
    word.phonetic = u"/rʌn/"_s;
    word.pos = u"v."_s;
    word.meaningZh = u"跑"_s;
    word.definitionEn = u"to move fast"_s;
    word.register_ = Register::casual;
    word.registerNoteZh = u"口语"_s;
    word.createdAt = now;
    word.lookupCount = 3;
    word.lastLookupAt = now;
    word.inflections = {{u"past"_s, u"ran"_s}, {u"ing"_s, u"running"_s}};
    word.forms = {{.kind = FormKind::past, .form = u"ran"_s, .firstSeenAt = now, .count = 2}};
    word.familyRoot = u"run"_s;
    word.affixes = {Affix::re};
    word.mnemonic = u"想着跑"_s;
    word.stage = Stage::learning;
    word.encounterDays = QStringList{u"2026-02-01"_s, u"2026-02-03"_s};
    word.sourceKeys = QStringList{u"a.example"_s, u"b.example"_s};
    word.wantToLearn = word.spellPractice = true;
    word.spellLevel = 2;
    word.restUntil = word.lastSpelledAt = word.stateAt = now;
    word.review = ReviewState{.stability = 3.14159,
        .difficulty = 5,
        .due = now,
        .lastReview = now,
        .reps = 4,
        .lapses = 1,
        .level = 2};
    word.examples = {exampleOf(u"He ran, \"fast\"\nhome."_s), exampleOf(u"Made."_s, Origin::generated)};
    word.examples[0].sentenceZh = u"他跑回家。"_s;
    word.examples[0].meaningZh = u"跑"_s;
    word.examples[0].sourceURL = u"https://a.example/x"_s;
    word.examples[0].addedAt = word.examples[1].addedAt = now;
    word.forms->first().sentence = u"I ran."_s;
    word.notes = {{.question = u"为什么？"_s,
        .answer = u"因为。"_s,
        .original = u"He ran."_s,
        .translation = u"他跑了。"_s,
        .sourceApp = u"Firefox"_s,
        .sourceURL = u"https://a.example/y"_s,
        .addedAt = now}};
    return word;
}

} // namespace

TEST(CsvWords, TellsEverythingOfAWordThatAPersonCanRead)
{
    const auto cells = cellsOf(fullWord());
    const QString time = u"2026-03-01 16:30:05"_s;
    const std::pair<QString, QString> expected[]{{u"单词"_s, u"run"_s}, {u"音标"_s, u"/rʌn/"_s},
        {u"词性"_s, u"v."_s}, {u"释义"_s, u"跑"_s}, {u"英文释义"_s, u"to move fast"_s},
        {u"语体"_s, u"口语"_s}, {u"语体说明"_s, u"口语"_s}, {u"状态"_s, u"在学"_s},
        {u"例句"_s, u"1. He ran, \"fast\"\nhome.\n2. Made."_s}, {u"例句译文"_s, u"1. 他跑回家。\n2. "_s},
        {u"例句里的意思"_s, u"1. 跑\n2. "_s},
        {u"例句来源"_s, u"1. a.example https://a.example/x\n2. AI 例句"_s},
        {u"词形"_s, u"running（-ing 形式），ran（过去式）"_s}, {u"遇到过的词形"_s, u"ran（过去式） × 2"_s},
        {u"词根"_s, u"run"_s}, {u"词缀"_s, u"re-"_s}, {u"换个记法"_s, u"想着跑"_s},
        {u"例句时间"_s, u"1. "_s + time + u"\n2. "_s + time},
        {u"词形第一次遇到"_s, u"ran "_s + time + u" I ran."_s}, {u"AI 解释"_s, u"为什么？\n因为。"_s},
        {u"AI 解释的原文"_s, u"He ran.\n他跑了。"_s},
        {u"AI 解释的来源"_s, u"Firefox · a.example https://a.example/y"_s}, {u"AI 解释的时间"_s, time},
        {u"来源"_s, u"a.example，b.example"_s}, {u"查过几次"_s, u"3"_s},
        {u"遇到的日子"_s, u"2026-02-01 2026-02-03"_s}, {u"保存时间"_s, time}, {u"上次查询"_s, time},
        {u"想学"_s, u"是"_s}, {u"休息到"_s, time}, {u"状态变于"_s, time}, {u"复习过几次"_s, u"4"_s},
        {u"忘记过几次"_s, u"1"_s}, {u"复习等级"_s, u"2"_s}, {u"记忆强度（天）"_s, u"3.14"_s},
        {u"难度"_s, u"5.00"_s}, {u"上次复习"_s, time}, {u"下次复习"_s, time}, {u"常拼"_s, u"是"_s},
        {u"拼写等级"_s, u"2"_s}, {u"上次拼写"_s, time}};
    for (const auto &[heading, text] : expected)
        EXPECT_EQ(cells.value(heading), text) << heading.toStdString();
    EXPECT_EQ(cells.size(), std::size(expected));
}

TEST(CsvWords, AWordThatHasLittleLeavesTheRestEmpty)
{
    const auto cells = cellsOf(wordNamed(u"bare"_s));
    for (const char *heading :
        {"例句", "例句来源", "AI 解释", "休息到", "复习过几次", "难度", "下次复习", "想学"})
        EXPECT_EQ(cells.value(QString::fromUtf8(heading), u"missing"_s), QString()) << heading;
    EXPECT_EQ(rowsOf(CsvWords::table({}, {}, now)).size(), 1) << "an empty notebook still has its headings";
}

TEST(CsvWords, NoTextIsAFormulaAndAllOthersStayAsTheyAre)
{
    const auto headword = [](const QString &text) { return cellsOf(wordNamed(text)).value(u"单词"_s); };
    for (const char *formula : {"=1+1", "+1", "-tion", "@SUM(A1)", " =1", "\t=1", "\n=1", "＝1"})
        EXPECT_EQ(headword(QString::fromUtf8(formula)), u'\'' + QString::fromUtf8(formula)) << formula;
    for (const char *text :
        {"a=b", "x-ray", "C++", "'tis", "1", "\",\"=1", ";=1", "", "emoji 👩‍👩‍👧\r\nline"})
        EXPECT_EQ(headword(QString::fromUtf8(text)), QString::fromUtf8(text)) << text;
}
