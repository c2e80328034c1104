#include "Programs.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/RecordFile.h"
#include "notebook/WordStore.h"
#include "sync/SyncKnown.h"
#include "sync/SyncState.h"

#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

// The programs as they are shipped, killed while words are added, reviewed and synced: after each kill every
// file can be read, and what was printed before it is there.
namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct Random {
    int below(int count) { return static_cast<int>(engine() % static_cast<unsigned>(count)); }
    std::mt19937 engine{1};
};

/// The notebook as another process left it, and as it is to be changed by this one.
struct Notebook {
    explicit Notebook(const QString &folder) : paths(folder) { }

    AppPaths paths;
    SystemClock clock;
    ConfigStore config{paths, clock};
    LearningLog log{paths, clock};
    WordStore store{paths, clock, config, log};
};

/// Reviews and removes for ever, and tells each change once it is made. Runs in a process of its own.
[[noreturn]] void learn(const QString &folder, int output)
{
    Notebook notebook(folder);
    const auto tell = [output](const QByteArray &line) {
        (void)!::write(output, line.constData(), static_cast<std::size_t>(line.size()));
    };
    for (int i = 0; !notebook.store.entries().isEmpty(); ++i) {
        const WordEntry word = notebook.store.entries().last();
        if (i % 4 == 3 && notebook.store.entries().size() > 20) {
            tell("removing " + word.headword.toUtf8() + " 0\n"); // it may be gone before that can be told
            notebook.store.remove(word.id);
            tell("removed " + word.headword.toUtf8() + " 0\n");
            continue;
        }
        const WordEntry asked = notebook.store.entries()[i % notebook.store.entries().size()];
        notebook.store.applyReview(asked.id, Rating::good, LogKind::review);
        tell("reviewed " + asked.headword.toUtf8() + ' '
            + QByteArray::number(notebook.store.find(asked.id)->review->reps) + '\n');
    }
    ::_exit(0);
}

class KillProof : public testing::Test {
protected:
    void SetUp() override
    {
        device.useProvider(practice.firstLine().section(u' ', -1), u"practice"_s);
        const Ended connected = device({u"--sync-connect"_s, server.code()});
        ASSERT_EQ(connected.code, 0) << connected.output.toStdString();
    }

    /// Starts a mode of the program and kills it somewhere; what it had printed by then.
    QStringList killed(const QStringList &arguments, int patience)
    {
        QProcess process;
        auto variables = QProcessEnvironment::systemEnvironment();
        variables.insert(u"NIMBRELLE_DATA_DIR"_s, device.path({}));
        process.setProcessEnvironment(variables);
        process.start(QStringLiteral(NIMBRELLE_PROGRAM), arguments);
        process.waitForFinished(random.below(patience));
        process.kill();
        process.waitForFinished();
        isKilled += process.exitStatus() == QProcess::CrashExit ? 1 : 0;
        return QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    }

    void add()
    {
        QStringList words;
        for (int i = 0; i < 5; ++i)
            words.append(u"word%1"_s.arg(++added));
        for (const QString &line : killed({u"--add-spelling"_s, words.join(u'|')}, 120)) {
            ASSERT_TRUE(line.startsWith(u"已加入常拼："_s)) << line.toStdString();
            const QString headword = line.section(u' ', 2, 2).section(u'（', 0, 0);
            told[headword] = 0;
            listed.insert(headword);
        }
    }

    void review()
    {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0)
            learn(device.path({}), ends[1]);
        ::close(ends[1]);
        QFile output;
        ASSERT_TRUE(
            output.open(ends[0], QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle));
        QByteArray printed;
        for (int left = random.below(12); left > 0 && !printed.endsWith("\n\n"); --left)
            printed += output.readLine();
        ::usleep(static_cast<useconds_t>(random.below(3000))); // into the middle of a change
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        isKilled += WIFSIGNALED(status) ? 1 : 0;
        printed += output.readAll();
        for (const QString &line : QString::fromUtf8(printed).split(u'\n', Qt::SkipEmptyParts)) {
            const QString headword = line.section(u' ', 1, 1);
            if (line.startsWith(u"removing"_s)) {
                told.remove(headword);
            } else if (line.startsWith(u"removed"_s)) {
                removed.insert(headword);
            } else {
                told[headword] = line.section(u' ', 2, 2).toLongLong();
            }
        }
    }

    void sync() { killed({u"--sync-now"_s}, 250); }

    template <class T> void expectReadable(const QString &path)
    {
        EXPECT_TRUE(!QFile::exists(path) || readRecordFile<T>(path)) << path.toStdString();
    }

    void expectAllThatWasTold()
    {
        const AppPaths paths(device.path({}));
        expectReadable<AppConfig>(paths.config);
        expectReadable<QList<AINote>>(paths.notes);
        expectReadable<QList<GrammarEncounter>>(paths.grammar);
        expectReadable<QList<AffixEncounter>>(paths.affixes);
        expectReadable<QList<Tombstone>>(paths.deleted);
        expectReadable<ReviewStats>(paths.reviewStats);
        expectReadable<SyncState>(paths.syncState);
        expectReadable<SyncKnown>(paths.syncKnown);
        expectReadable<QList<WordEntry>>(paths.words);
        EXPECT_TRUE(readRecordFile<AppConfig>(paths.config)->syncToken.size() > 0);
        expectWords(readRecordFile<QList<WordEntry>>(paths.words).value_or(QList<WordEntry>()));
    }

    void expectWords(const QList<WordEntry> &words)
    {
        QMap<QString, WordEntry> byHeadword;
        for (const WordEntry &word : words)
            byHeadword[word.headword] = word;
        for (auto word = told.cbegin(); word != told.cend(); ++word) {
            const std::string name = word.key().toStdString();
            ASSERT_TRUE(byHeadword.contains(word.key())) << name << " is lost";
            EXPECT_TRUE(byHeadword[word.key()].spellPractice || !listed.contains(word.key())) << name;
            EXPECT_GE(byHeadword[word.key()].review.value_or(ReviewState()).reps, word.value()) << name;
        }
        for (const QString &headword : std::as_const(removed))
            EXPECT_FALSE(byHeadword.contains(headword)) << headword.toStdString() << " is back";
    }

    const RunningServer practice{QStringLiteral(NIMBRELLE_PRACTICE), {u"--delay-ms"_s, u"0"_s}};
    const SyncServer server;
    const Device device;
    Random random;
    QMap<QString, qint64> told; ///< headwords that must be there, with the reviews that they must have
    QSet<QString> listed; ///< of those, the ones that are always to be spelled
    QSet<QString> removed;
    int added = 0;
    int isKilled = 0;
};

TEST_F(KillProof, WhatWasToldIsThereAfterEveryKill)
{
    const int kills = std::max(50, qEnvironmentVariableIntValue("NIMBRELLE_TEST_KILLS"));
    int runs = 0;
    for (; isKilled < kills && !HasFailure(); ++runs) {
        if (runs % 4 == 0)
            add();
        else if (runs % 4 == 2)
            sync();
        else
            review();
        expectAllThatWasTold();
    }
    EXPECT_FALSE(told.isEmpty());
    EXPECT_FALSE(removed.isEmpty() && kills > 50);

    const Ended last = device({u"--sync-now"_s});
    ASSERT_EQ(last.code, 0) << last.output.toStdString();
    expectAllThatWasTold();
    const Device other;
    EXPECT_EQ(other({u"--sync-connect"_s, server.code()}).code, 0);
    EXPECT_EQ(other({u"--sync-now"_s}).code, 0);
    expectWords(readRecordFile<QList<WordEntry>>(other.path(u"words.json"_s)).value_or(QList<WordEntry>()));
    EXPECT_EQ(DamagedFiles::keptIn(device.path({})), QStringList());
    std::printf("%d runs, %d kills, %d words told\n", runs, isKilled, static_cast<int>(told.size()));
}

} // namespace

} // namespace nimbrelle
