#include "coach/CoachHistory.h"
#include "export/WordImport.h"
#include "frame/RecordFile.h"
#include "support/FakeAIClient.h"
#include "support/FaultyCalls.h"
#include "sync/RandomLearner.h"

#include <QDir>

#include <algorithm>
#include <gtest/gtest.h>

// A day with every writer in it, once for each call of the system that goes wrong: no file is ever torn, and
// what a caller was told is there.
namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// File names, and their bytes; those of a missing file are null.
using Files = QMap<QString, QByteArray>;

Files filesIn(const QString &folder)
{
    Files files;
    for (const QString &name : QDir(folder).entryList(QDir::Files | QDir::Hidden))
        files[name] = readFile(folder + u'/' + name).value_or(QByteArray());
    return files;
}

/// What stands at the end of a line; a dead process may leave half of one behind it.
QByteArray wholeLines(const QByteArray &log)
{
    return log.first(log.lastIndexOf('\n') + 1);
}

/// An event that had to wait for the disk may come behind what a sync brought.
QList<QByteArray> sortedLines(const QByteArray &log)
{
    QList<QByteArray> lines = log.split('\n');
    std::ranges::sort(lines);
    return lines;
}

/// No answer comes, and none is waited for.
void queueWord(WordImport &import, const QString &word)
{
    import.add({word});
    import.pause();
}

/// A device with all owners of files, whose file calls go wrong at one place.
struct Learner {
    Learner(const Files &files, const MemoryServer &network) : server(network)
    {
        QFile::remove(device.paths.config);
        for (const auto &[name, bytes] : files.asKeyValueRange())
            EXPECT_TRUE(replaceFile(device.directory.filePath(name), bytes));
        device.restart();
        coach.emplace(device.paths, device.clock, writer);
        imported.emplace(device.store(), device.config(), device.paths, device.clock, ai.factory(), writer);
    }

    static constexpr int steps = 9;
    /// One thing that changes files, the same in every run.
    void take(int step)
    {
        device.clock.advance(1s);
        const QUuid id = QUuid::createUuidV5(QUuid(), QByteArray::number(step));
        if (step == steps - 1)
            device.syncWith(server);
        else if (step == steps - 2)
            coach->put(u"2026-03-02"_s, {{.id = id, .fromCoach = true, .text = u"早"_s, .shown = {}}});
        else if (step == steps - 3)
            device.store().addSentenceNote({.id = id, .addedAt = device.clock.now()});
        else if (step == steps - 5)
            queueWord(*imported, u"fathom"_s);
        else if (step == steps - 4)
            device.store().remove(device.store().entries().first().id);
        else
            learn(device, static_cast<quint32>(50 + step));
    }

    QByteArray bytes(const QString &name) const
    {
        return readFile(device.directory.filePath(name)).value_or(QByteArray());
    }
    bool isUnwritten(const QString &name) const
    {
        const auto isIt = [path = device.directory.filePath(name)](
                              const UnwrittenFile &file) { return file.path == path; };
        return std::ranges::any_of(writer.unwritten(), isIt);
    }

    FaultyCalls calls;
    DataWriter writer{calls};
    Device device{2, writer};
    std::optional<CoachHistory> coach;
    FakeAI ai;
    std::optional<WordImport> imported;
    MemoryServer server;
};

class StorageFaults : public testing::TestWithParam<Fault> {
protected:
    /// The day as it goes where nothing is wrong.
    void SetUp() override
    {
        Device other(3);
        for (quint32 seed = 100; seed < 110; ++seed)
            learn(other, seed);
        other.syncWith(server);
        Device third(4);
        for (quint32 seed = 200; seed < 212; ++seed)
            learn(third, seed);
        third.syncWith(server); // so that the day's sync brings something
        for (quint32 seed = 0; seed < 12; ++seed)
            learn(other, seed);
        CoachHistory(other.paths, other.clock)
            .put(u"2026-03-01"_s, {{.id = QUuid(), .text = u"a"_s, .shown = {}}});
        FakeAI ai;
        WordImport import(other.store(), other.config(), other.paths, other.clock, ai.factory());
        queueWord(import, u"delve"_s);
        before = filesIn(other.directory.path());

        Learner learner(before, server);
        after.append(filesIn(learner.device.directory.path()));
        for (int step = 0; step < Learner::steps; ++step) {
            learner.take(step);
            after.append(filesIn(learner.device.directory.path()));
        }
        for (const QString &name : after.last().keys())
            states[name] = QList{after.first().value(name)}
                + learner.calls.written().value(learner.device.directory.filePath(name));
    }

    /// Whether a file holds a state that is no older than the one behind `step`.
    bool isSince(int step, const QString &name, const QByteArray &bytes) const
    {
        const QList<QByteArray> &known = states[name];
        return known.indexOf(bytes, known.indexOf(after[step].value(name))) >= 0;
    }

    void expectAllThatWasTold(const Learner &learner, int told)
    {
        for (const QString &name : states.keys()) {
            const bool isLog = name.endsWith(u"jsonl"_s);
            const QByteArray bytes = learner.bytes(name);
            if (learner.calls.isDead())
                EXPECT_TRUE(isSince(told, name, isLog ? wholeLines(bytes) : bytes)) << name.toStdString();
            else if (learner.isUnwritten(name))
                EXPECT_TRUE(isSince(0, name, bytes)) << name.toStdString();
            else if (isLog)
                EXPECT_EQ(sortedLines(bytes), sortedLines(after[told].value(name)));
            else if (!name.startsWith(u"sync-"_s)) // which remember what the log was like
                EXPECT_TRUE(bytes == after[told].value(name)) << name.toStdString();
        }
    }

    /// False when the day had fewer calls.
    bool live(int at)
    {
        Learner learner(before, server);
        learner.calls.arm(GetParam(), at);
        for (int step = 0; step < Learner::steps && !learner.calls.isDead(); ++step) {
            learner.take(step);
            if (learner.calls.wasReached())
                expectAllThatWasTold(learner, learner.calls.isDead() ? step : step + 1);
        }
        removeLeftovers(learner.device.directory.path());
        EXPECT_EQ(filesIn(learner.device.directory.path()).keys(), QStringList(states.keys()));
        return learner.calls.wasReached();
    }

    Files before;
    QList<Files> after; ///< the first: before the day
    QMap<QString, QList<QByteArray>> states; ///< all that each file held, in turn
    MemoryServer server;
};

TEST_P(StorageFaults, TearNoFileAndLoseNothingThatWasTold)
{
    const QStringList all{u"affixes.json"_s, u"coach.json"_s, u"config.json"_s, u"deleted.json"_s,
        u"grammar.json"_s, u"learning-log.jsonl"_s, u"lookup-queue.json"_s, u"notes.json"_s,
        u"review-stats.json"_s, u"sync-known.json"_s, u"sync-state.json"_s, u"words.json"_s};
    ASSERT_EQ(QStringList(states.keys()), all);
    for (const QString &name : all)
        EXPECT_GT(states[name].size(), 1) << name.toStdString() << " is not written in this day";
    int at = 0;
    while (live(at) && !HasFailure())
        ++at;
    EXPECT_GT(at, GetParam() == Fault::cutsShort ? 10 : 100);
    if (HasFailure())
        ADD_FAILURE() << "at call " << at;
}

std::string nameOf(const testing::TestParamInfo<Fault> &info)
{
    constexpr const char *names[]{"None", "Fails", "CutsShort", "Dies"};
    return names[static_cast<int>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(
    , StorageFaults, testing::Values(Fault::fails, Fault::cutsShort, Fault::dies), nameOf);

// Here the file is torn from the beginning, and what it holds has to survive beside the new one.
TEST(DamagedFileFaults, WhatADamagedFileHoldsIsSomewhereAtEveryMoment)
{
    for (const Fault fault : {Fault::fails, Fault::cutsShort, Fault::dies}) {
        FaultyCalls calls;
        for (int at = 0; at == 0 || calls.wasReached(); ++at) {
            const QTemporaryDir folder;
            const QString path = folder.filePath(u"list.json"_s);
            const ManualClock clock;
            std::destroy_at(&calls);
            std::construct_at(&calls);
            DataWriter writer(calls);
            DamagedFiles damaged(clock, writer);
            ASSERT_TRUE(replaceFile(path, "{torn"));
            ASSERT_FALSE(readRecordFile<AppConfig>(path, damaged));
            calls.arm(fault, at);
            writeRecordFile(path, AppConfig(), damaged);
            removeLeftovers(folder.path());
            const Files files = filesIn(folder.path());
            EXPECT_TRUE(files.values().contains("{torn")) << at;
            EXPECT_EQ(readRecordFile<AppConfig>(path).has_value(), files.value(u"list.json"_s) != "{torn")
                << at;
            if (!calls.isDead() && writer.unwritten().isEmpty())
                EXPECT_TRUE(readRecordFile<AppConfig>(path)) << at;
        }
    }
}

} // namespace

} // namespace nimbrelle
