#include "card/views/AskStage.h"
#include "card/views/CardStage.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>
#include <unistd.h>

namespace nimbrelle {

namespace {

/// What the process holds at the moment.
struct Held {
    qsizetype kilobytes = 0;
    qsizetype descriptors = 0;
    qsizetype threads = 0;
    QByteArray children;

    static Held now()
    {
        const auto contentOf = [](const QString &path) {
            QFile file(path);
            return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
        };
        const auto countIn = [](const QString &folder) {
            return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
        };
        const QString self = QString::number(QCoreApplication::applicationPid());
        return {.kilobytes = contentOf(u"/proc/self/statm"_s).split(' ').value(1).toLongLong()
                * sysconf(_SC_PAGESIZE) / 1024,
            .descriptors = countIn(u"/proc/self/fd"_s),
            .threads = countIn(u"/proc/self/task"_s),
            .children = contentOf(u"/proc/self/task/%1/children"_s.arg(self))};
    }
};

constexpr qsizetype mostGrowth = 400; // kilobytes, for each round

/// After a while in which caches and buffers fill.
template <class Step> void expectNothingLeftBy(int timesARound, Step step)
{
    const int rounds = std::max(qEnvironmentVariableIntValue("NIMBRELLE_SOAK_ROUNDS"), 1);
    const int times = timesARound * rounds;
    for (int i = 0; i < timesARound / 2; ++i)
        step(i);
    const Held before = Held::now();
    for (int i = 0; i < times; ++i)
        step(i);
    const Held after = Held::now();
    testing::Test::RecordProperty("grownKB", static_cast<int>(after.kilobytes - before.kilobytes));
    EXPECT_LT(after.kilobytes, before.kilobytes + mostGrowth * rounds);
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_EQ(after.threads, before.threads);
    EXPECT_EQ(after.children, before.children);
}

} // namespace

TEST(Soak, CardsLeaveNothing)
{
    CardStage stage;
    stage.notebook.save("word1");
    expectNothingLeftBy(200, [&](int i) {
        Explanation answer = Notebook::explained("word", "I was reluctant to post this.");
        answer.headword += QString::number(i % 40);
        stage.controller.lookup(answer.headword, answer.sentence, {640, 600});
        if (stage.ai.waiting() > 0)
            stage.ai.reply(answer);
        ViewStage::settle();
        stage.press("fold");
        stage.controller.showTranslation(u"a framed text"_s, {100, 700});
        stage.ai.reply(Translation{.translationZh = u"译文"_s});
        ViewStage::settle();
        stage.controller.hide();
        stage.ai.forgetCalls();
    });
}

TEST(Soak, ConversationsLeaveNothing)
{
    AskStage stage;
    expectNothingLeftBy(40, [&](int i) {
        stage.session.start(i % 2 == 0 ? AskStage::wordContext() : AskStage::longContext(), std::nullopt);
        for (int question = 0; question < 2; ++question) {
            stage.session.send(u"why?"_s);
            for (int piece = 0; piece < 5; ++piece)
                stage.piece(u"It is **polite**\n- so\n"_s);
            stage.end();
        }
        stage.view.setVisible(i % 3 != 0);
        stage.ai.forgetCalls();
    });
}

} // namespace nimbrelle
