#include "Ratios.h"
#include "SampleLife.h"
#include "export/GrowthFiles.h"
#include "export/GrowthPage.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/RecordFile.h"

#include <QFile>
#include <QTemporaryDir>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"});
constexpr qsizetype wordCount = 5000;
constexpr qsizetype eventCount = 100'000;

QStringList vocabulary()
{
    QStringList words;
    for (qsizetype i = 0; i < wordCount; ++i)
        words.append(u"headword%1"_s.arg(i));
    return words;
}

/// Four busy years on disk.
struct Files {
    Files()
    {
        GrowthSource life = bench::sampleLife(
            {.vocabulary = vocabulary(), .days = 1460, .savedDaily = 4, .lookupsDaily = 45, .roundsDaily = 2},
            now);
        writeRecordFile(paths.words, life.words);
        writeRecordFile(paths.grammar, life.grammar);
        writeRecordFile(paths.affixes, life.affixes);
        QStringList lines;
        for (const LearningLog::Event &event : std::as_const(life.events))
            lines.append(QString::fromUtf8(*encode(event, TextForm::line)));
        std::printf("%lld words, %lld events\n", static_cast<long long>(life.words.size()),
            static_cast<long long>(lines.size()));
        log.replaceAll(lines.last(std::min(lines.size(), eventCount)));
    }

    static Files &shared()
    {
        static Files files;
        return files;
    }

    QTemporaryDir directory;
    AppPaths paths{directory.path()};
    LearningLog log{paths, SystemClock::shared()};
};

GrowthSource read()
{
    const Files &files = Files::shared();
    return readGrowthSource(files.paths, files.log, {}, now);
}

void readFiles(benchmark::State &state)
{
    Files::shared();
    for (auto _ : state)
        benchmark::DoNotOptimize(read().words.size());
}

void makeReport(benchmark::State &state)
{
    const GrowthSource source = read();
    for (auto _ : state)
        benchmark::DoNotOptimize(makeGrowthReport(source, now, QTimeZone::systemTimeZone()).words);
}

void filesToPage(benchmark::State &state)
{
    const Files &files = Files::shared();
    const QTemporaryDir elsewhere;
    for (auto _ : state) {
        const GrowthReport report = makeGrowthReport(read(), now, QTimeZone::systemTimeZone());
        writeGrowthPage(elsewhere.filePath(u"page.html"_s), growthPage(report), files.paths);
    }
}

BENCHMARK(readFiles)->Unit(benchmark::kMillisecond);
BENCHMARK(makeReport)->Unit(benchmark::kMillisecond);
BENCHMARK(filesToPage)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    return bench::runWithRatios(argc, argv,
        {
            {"page from the files / reading the files", "filesToPage", {"readFiles"}, 2.5},
        });
}
