#include "Ratios.h"
#include "SampleNotebook.h"
#include "export/ExportFile.h"
#include "frame/RecordFile.h"

#include <QTemporaryDir>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace nimbrelle::bench;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"});

/// A notebook of 10,000 words on disk, and a folder to export to.
struct Stage {
    Stage()
    {
        writeRecordFile(source.paths.words, source.words);
        QDir(directory.path()).mkdir(u"out"_s);
    }

    static Stage &shared()
    {
        static Stage stage;
        return stage;
    }

    QTemporaryDir directory;
    ExportSource source{
        .paths = AppPaths(directory.path()), .words = sampleWords(10000, now), .config = {}, .now = now};
};

void encodeOnce(benchmark::State &state)
{
    const Stage &stage = Stage::shared();
    for (auto _ : state)
        benchmark::DoNotOptimize(encode(stage.source.words, TextForm::file));
}

void exportWhole(benchmark::State &state, ExportKind kind)
{
    const Stage &stage = Stage::shared();
    const QString file = stage.directory.filePath(u"out/export"_s);
    for (auto _ : state)
        exportTo(file, kind, stage.source);
}

BENCHMARK(encodeOnce)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportWhole, csv, ExportKind::csv)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportWhole, anki, ExportKind::anki)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportWhole, cloze, ExportKind::ankiCloze)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportWhole, backup, ExportKind::backup)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    const auto against = [](const std::string &kind, double goal) {
        return Ratio{.label = "export of 10,000 words as " + kind + " / encoding them once",
            .above = "exportWhole/" + kind + "/real_time",
            .below = {"encodeOnce/real_time"},
            .goal = goal};
    };
    return runWithRatios(argc, argv,
        {against("csv", 4.0), against("anki", 4.0), against("cloze", 4.0), against("backup", 8.0)});
}
