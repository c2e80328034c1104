#include "export/GrowthPage.h"

#include "export/GrowthFiles.h"
#include "export/History.h"
#include "support/Notebook.h"

#include <QFile>
#include <QXmlStreamReader>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

namespace {

/// The text of a page that is nested as it should be, its markup left out.
QString readText(const QByteArray &page)
{
    QXmlStreamReader reader(page.mid(page.indexOf("<html")));
    QString text;
    int pictures = 0, titles = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.attributes().value(u"role"_s) == u"img"_s)
            ++pictures;
        if (reader.isStartElement() && reader.name() == u"svg"_s
            && reader.attributes().hasAttribute(u"role"_s)) {
            reader.readNextStartElement();
            titles += reader.name() == u"title"_s ? 1 : 0;
        }
        if (reader.isCharacters())
            text += reader.text();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString() << reader.lineNumber();
    EXPECT_EQ(pictures, titles) << "a picture without words";
    return text;
}

/// A word for which somebody else chose every text.
History hostile(const QString &text)
{
    History history;
    WordEntry &word = history.add("x", "2025-03-01T00:00:00Z", Stage::learning);
    word.headword = text;
    word.meaningZh = text;
    word.examples = {exampleOf(text, Origin::met, utc("2025-03-01T00:00:00Z"))};
    word.examples[0].sentenceZh = text;
    word.examples[0].sourceApp = text;
    word.sourceKeys = QStringList{text};
    history.affixes = {
        {.id = {}, .affix = Affix::un, .headword = text, .root = {}, .sentence = {}, .addedAt = {}}};
    history.events.append(
        {.time = utc("2025-05-01T00:00:00Z"), .kind = u"lookup"_s, .word = text, .detail = text});
    return history;
}

TEST(GrowthPage, NeverTakesAWordForMarkup)
{
    const QString text =
        u"<script src='https://evil.example'>\"&amp;%1 %99\u202Eabc\u0007</style>\n--> 😀é"_s;
    const QByteArray page = growthPage(hostile(text).at("2026-03-01T04:00:00Z"));
    EXPECT_THAT(page.toStdString(), Not(HasSubstr("<script")));
    EXPECT_THAT(page.toStdString(), Not(HasSubstr("\u202E")));
    EXPECT_EQ(page.count("</style>"), 1);
    const QString shown = readText(page);
    EXPECT_EQ(shown.count(u"<script src='https://evil.example'>\"&amp;%1 %99abc</style> --> 😀é"_s), 7)
        << shown.toStdString();
}

TEST(GrowthPage, ReadsWellWithLittleInIt)
{
    const QString empty = readText(growthPage(History().at("2026-03-01T04:00:00Z")));
    EXPECT_TRUE(empty.contains(u"生词本里还没有词"_s));
    EXPECT_FALSE(empty.contains(u"接下来四周"_s));

    History three;
    for (const char *word : {"a", "b", "c"})
        three.log("2026-03-01T00:00:00Z", "save", (three.add(word, "2026-03-01T00:00:00Z"), word), "mpv");
    const QByteArray page = growthPage(three.at("2026-03-01T04:00:00Z"));
    const QString text = readText(page);
    EXPECT_TRUE(text.contains(u"从 2026 年 3 月 1 日到现在，留下了 3 个词。"_s)) << text.toStdString();
    EXPECT_TRUE(text.contains(u"遇到 3 个词，留下 3 个。"_s));
    EXPECT_TRUE(text.contains(u"没有留下句子"_s));
    EXPECT_FALSE(text.contains(u"逐月的数字"_s)) << "one month is no course of time";
}

/// A data folder, and a place beside it for the page.
class GrowthFiles : public testing::Test, protected Notebook {
protected:
    QString refusal(const QString &path)
    {
        try {
            writeGrowthPage(path, "page", paths);
        } catch (const Failure &failure) {
            return failure.text();
        }
        return {};
    }
};

TEST_F(GrowthFiles, AreNeverOverwrittenByThePage)
{
    const QTemporaryDir elsewhere;
    save("word");
    QDir().mkdir(paths.backups);
    const auto before = readFile(paths.words);
    const QString link = elsewhere.filePath(u"link.html"_s);
    QFile::link(paths.words, link);
    for (const QString &path :
        {paths.words, directory.filePath(u"new.html"_s), paths.backups + u"/kept.zip"_s, link})
        EXPECT_EQ(refusal(path), u"不能写进 Nimbrelle 自己的数据文件夹，请换一个地方"_s);
    EXPECT_EQ(readFile(paths.words), before);
    EXPECT_TRUE(refusal(elsewhere.filePath(u"missing/page.html"_s)).endsWith(u"：没有这个文件夹"_s));
    EXPECT_FALSE(refusal(elsewhere.path()).isEmpty());

    const QString page = elsewhere.filePath(u"page.html"_s);
    EXPECT_EQ(refusal(page), QString());
    struct stat status { };
    ::stat(QFile::encodeName(page).constData(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0600) << "what somebody reads is nobody else's business";
}

TEST_F(GrowthFiles, AreReadWholeOrNotAtAll)
{
    save("word");
    const GrowthSource source = readGrowthSource(paths, log, config.config(), clock.now());
    EXPECT_EQ(source.words, store.entries());
    EXPECT_EQ(source.events.size(), 1);
    QFile(paths.words).resize(20);
    EXPECT_THROW(readGrowthSource(paths, log, config.config(), clock.now()), Failure)
        << "a page about an empty notebook would be a lie";
}

} // namespace
