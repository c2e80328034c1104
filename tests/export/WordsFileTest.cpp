#include "export/WordsFile.h"

#include "export/AnkiNotes.h"
#include "export/CsvWords.h"
#include "frame/AppConfig.h"
#include "frame/Failure.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

/// "word|word|... (skipped)", or what is wrong.
QString read(QByteArrayView bytes)
{
    try {
        const WordsFile::Words words = WordsFile::parse(bytes);
        const QString skipped = words.skipped > 0 ? u" (%1)"_s.arg(words.skipped) : QString();
        return words.words.join(u'|') + skipped;
    } catch (const Failure &failure) {
        return failure.text();
    }
}

} // namespace

TEST(WordsFile, ReadsListsAndTables)
{
    const std::pair<QByteArray, const char *> cases[]{
        {"run\nwalk\r\ngive  up \r\n\nRUN\n", "run|walk|give up"},
        {"# my list\n\nrun\n# more\nwalk", "run|walk"},
        {"\xEF\xBB\xBFrun", "run"},
        {QByteArray("\xFF\xFEr\0u\0n\0", 8), "run"},
        {"\"quoted\nand more", "\"quoted|and more"},
        {"run,跑\nwalk,走\n", "run|walk"},
        {"释义;Word\n跑;run\n\"走; 去\";\"say \"\"hi\"\"\"\n", "run|say \"hi\""},
        {"id\tword\n1\trun\n2\n", "run"},
        {"\"run\nup\",x\nwalk", "run up|walk"},
        {"run,\"open to the end\nwalk", "run"},
        {"放弃\ncafé\n", "放弃|café"},
        {"---\n12\nrun\nthis line is much longer than any word or phrase that anybody would look up\n",
            "run (3)"},
        {"#separator:tab\n#html:true\n#notetype column:1\n#deck column:2\nBasic\tMine\t<i>g<b "
         "class=x>iv</b>e</i>&nbsp;up<BR>"
         "&#x26; &bogus;\t放弃\n",
            "give up & &bogus;"},
        {"#separator:tab\n#guid column:1\nid1\tHe {{c1::ran::hint}} and {{c2::fell}}\n", "ran"},
        {"run \x0e\nwa\u200Dlk\n", "run|wa\u200Dlk"},
        {"", ""},
    };
    for (const auto &[bytes, expected] : cases)
        EXPECT_EQ(read(bytes), QString::fromUtf8(expected)) << bytes.constData();
}

TEST(WordsFile, ReadsWhatTheProgramItselfExports)
{
    const QList<WordEntry> words{wordNamed(u"-tion"_s), wordNamed(u"say \"hi\", then"_s),
        wordNamed(u"＝1x"_s), wordNamed(u"o'clock & co"_s), wordNamed(u"run"_s)};
    EXPECT_EQ(read(CsvWords::table(words, {}, {})), u"-tion|say \"hi\", then|＝1x|o'clock & co|run"_s);
    const QString fromAnki = u"-tion|say \"hi\", then|＝1x|o'clock & co|run"_s;
    EXPECT_EQ(read(AnkiNotes::text(words, AnkiNotes::Variant::cards, {}, {})), fromAnki);
    EXPECT_EQ(read(AnkiNotes::text(words, AnkiNotes::Variant::cloze, {}, {})), fromAnki);
}

TEST(WordsFile, RefusesWhatIsNoText)
{
    EXPECT_EQ(read("caf\xE9"), u"这个文件不是 UTF-8 文本，请另存为 UTF-8 再导入"_s);
    EXPECT_EQ(read(QByteArray("PK\3\4\0\0", 6)), u"这个文件不是 UTF-8 文本，请另存为 UTF-8 再导入"_s);
    EXPECT_EQ(read(QByteArray((8 << 20) + 1, 'a')), u"这个文件太大，不像是词表"_s);
    QByteArray many;
    for (int i = 0; i <= 20000; ++i)
        many += "word" + QByteArray::number(i) + '\n';
    EXPECT_EQ(read(many), u"一次最多导入 20000 个词"_s);
}
