#include "export/AnkiNotes.h"

#include "frame/AppConfig.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using AnkiNotes::Variant;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"});

/// As the published description of Anki's text files has it: header lines first, then fields between
/// separators; a field in quotation marks is never made here.
struct AnkiFile {
    QStringList headers;
    QList<QStringList> notes;
};

AnkiFile ankiFile(const QList<WordEntry> &words, Variant variant)
{
    AnkiFile file;
    const QByteArray bytes = AnkiNotes::text(words, variant, {}, now);
    EXPECT_TRUE(bytes.endsWith('\n'));
    for (const QString &line : QString::fromUtf8(bytes).chopped(1).split(u'\n')) {
        if (line.startsWith(u'#') && file.notes.isEmpty())
            file.headers.append(line);
        else
            file.notes.append(line.split(u'\t'));
    }
    return file;
}

/// What a reader sees of a field.
QString shown(QString html)
{
    const std::pair<const char *, const char *> entities[]{{"<br>", "\n"}, {"<b>", ""}, {"</b>", ""},
        {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&#9;", "\t"}, {"&#39;", "'"}, {"&#123;", "{"},
        {"&#125;", "}"}, {"&#91;", "["}, {"&#58;", ":"}, {"&amp;", "&"}};
    for (const auto &[entity, text] : entities)
        html.replace(QString::fromLatin1(entity), QString::fromLatin1(text));
    return html;
}

WordEntry run()
{
    WordEntry word = wordNamed(u"run"_s);
    word.id = QUuid(u"12345678-9ABC-4DEF-8123-456789ABCDEF"_s);
    word.phonetic = u"/rʌn/"_s;
    word.meaningZh = u"跑；运行"_s;
    word.inflections = {{u"past"_s, u"ran"_s}};
    word.examples = {exampleOf(u"He ran, and ran home. The grunt runner."_s)};
    word.examples[0].sentenceZh = u"他跑回了家。"_s;
    word.examples[0].sourceApp = u"Firefox"_s;
    word.examples[0].sourceURL = u"https://www.example.org/a?b='c'&d"_s;
    return word;
}

} // namespace

TEST(AnkiNotes, TellsAnkiHowToReadIt)
{
    const AnkiFile cards = ankiFile({run()}, Variant::cards), cloze = ankiFile({run()}, Variant::cloze);
    EXPECT_THAT(cards.headers,
        ElementsAre(u"#separator:tab"_s, u"#html:true"_s,
            u"#columns:标识\t单词\t音标\t释义\t例句\t译文\t词形\t来源\t标签"_s, u"#guid column:1"_s,
            u"#tags column:9"_s));
    EXPECT_THAT(cloze.headers,
        ElementsAre(u"#separator:tab"_s, u"#html:true"_s, u"#guid column:1"_s, u"#tags column:4"_s))
        << "with names they would not find the fields of a type that names them otherwise";
}

TEST(AnkiNotes, ACardHasEachThingInItsField)
{
    EXPECT_THAT(ankiFile({run()}, Variant::cards).notes.value(0),
        ElementsAre(u"nimbrelle-4de67288-9ea6-5c8c-b82f-97a50050c197"_s, u"run"_s, u"/rʌn/"_s, u"跑；运行"_s,
            u"He <b>ran</b>, and <b>ran</b> home. The grunt runner."_s, u"他跑回了家。"_s, u"ran（过去式）"_s,
            u"<a href='https://www.example.org/a?b=&#39;c&#39;&amp;d'>Firefox · example.org</a>"_s,
            u"Nimbrelle Nimbrelle::沉睡"_s));
}

// The identifier is what makes a second import an update.
TEST(AnkiNotes, TheSameWordIsTheSameNoteWhateverChangesInIt)
{
    WordEntry later = wordNamed(u"Run"_s); // deleted and taken back, or joined with that of another device
    const auto id = [](const WordEntry &word, Variant variant) {
        return ankiFile({wordNamed(u"other"_s), word}, variant).notes.value(1).first();
    };
    EXPECT_EQ(id(run(), Variant::cards), id(later, Variant::cards));
    EXPECT_EQ(id(run(), Variant::cloze), id(later, Variant::cloze));
    EXPECT_NE(id(run(), Variant::cards), id(run(), Variant::cloze)) << "two notes, not one of changing type";
}

TEST(AnkiNotes, NoTextBreaksOutOfItsField)
{
    const QString nasty = u"#\"a\"\tb, 'c' <i>&amp;</i>\n👩‍👩‍👧 {{d}} [sound:e.mp3]; é"_s;
    WordEntry word = wordNamed(nasty);
    word.phonetic = word.meaningZh = nasty;
    word.examples = {exampleOf(nasty + u" end"_s)};
    word.examples[0].sentenceZh = nasty;
    word.examples[0].sourceTitle = nasty;
    const QStringList note = ankiFile({word}, Variant::cards).notes.value(0);
    ASSERT_EQ(note.size(), 9);
    for (const qsizetype field : {1, 2, 3, 5, 7})
        EXPECT_EQ(shown(note[field]), nasty) << field;
    EXPECT_EQ(shown(note[4]), nasty + u" end"_s);
    EXPECT_FALSE(note.join(u' ').contains(u'"')) << "a field that begins with one would be taken as quoted";
    EXPECT_FALSE(note.join(u' ').contains(u"[sound:"_s));
    word.phonetic = u"a\r\nb\rc\u2028d\u0001"_s;
    EXPECT_EQ(ankiFile({word}, Variant::cards).notes.value(0).value(2), u"a<br>b<br>c<br>d"_s);
}

TEST(AnkiNotes, ACardWithoutASentenceLeavesItsFieldsEmpty)
{
    const QStringList note = ankiFile({wordNamed(u"bare"_s)}, Variant::cards).notes.value(0);
    EXPECT_THAT(note.mid(2, 6), ElementsAre(u""_s, u""_s, u""_s, u""_s, u""_s, u""_s));
}

TEST(AnkiNotes, AClozeHasItsGapWhereTheWordStandsElseBehindTheMeaning)
{
    const auto gapText = [](const QString &headword, const QString &sentence) {
        WordEntry word = wordNamed(headword);
        word.meaningZh = u"意思"_s;
        if (!sentence.isEmpty())
            word.examples = {exampleOf(sentence)};
        return ankiFile({word}, Variant::cloze).notes.value(0).value(1);
    };
    EXPECT_EQ(gapText(u"lead"_s, u"Leaders lead. Mislead not."_s), u"Leaders {{c1::lead}}. Mislead not."_s);
    EXPECT_EQ(gapText(u"lead"_s, u"Nothing here."_s), u"意思 {{c1::lead}}"_s);
    EXPECT_EQ(gapText(u"lead"_s, {}), u"意思 {{c1::lead}}"_s);
    EXPECT_EQ(gapText(u"C++"_s, u"In C++ it is."_s), u"In {{c1::C++}} it is."_s);
    EXPECT_EQ(gapText(u"std::move"_s, u"Use std::move {{c2::now}}."_s),
        u"Use {{c1::std&#58;&#58;move}} &#123;&#123;c2::now&#125;&#125;."_s);
    EXPECT_EQ(ankiFile({run()}, Variant::cloze).notes.value(0).value(2),
        u"<b>run</b> /rʌn/<br>跑；运行<br>他跑回了家。<br>ran（过去式）<br>"
        "<a href='https://www.example.org/a?b=&#39;c&#39;&amp;d'>Firefox · example.org</a>"_s);
}
