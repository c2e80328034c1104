#include "OcrCorpus.h"
#include "platform/linux/ocr/EngineText.h"
#include "platform/linux/ocr/GreyPicture.h"
#include "platform/linux/ocr/TesseractEngine.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <stop_token>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace nimbrelle::bench;

namespace {

struct Outcome {
    QStringList missed;
    double milliseconds = 0;
};

Outcome ours(TesseractEngine &engine, const Sheet &sheet)
{
    QElapsedTimer time;
    time.start();
    const Recognition recognition = engine.read(sheet.picture, sheet.style, {}, {});
    const double milliseconds = static_cast<double>(time.nsecsElapsed()) / 1e6;
    return {missedWords(sheet, recognition.lines), milliseconds};
}

QList<RecognizedLine> linesOfTable(const QByteArray &table, QSize size)
{
    QList<RecognizedLine> lines;
    for (const QByteArray &row : table.split('\n')) {
        const QList<QByteArray> cells = row.split('\t');
        if (cells.size() < 12 || cells.at(0) != "5")
            continue;
        const QRect box(cells.at(6).toInt(), cells.at(7).toInt(), cells.at(8).toInt(), cells.at(9).toInt());
        EngineWord word{QString::fromUtf8(cells.at(11)), box, {}};
        word.unitBoxes.assign(static_cast<std::size_t>(word.text.size()), box);
        lines.append(recognizedLine({word}, size));
    }
    return lines;
}

/// The engine's own program on the same prepared picture, with one thread, its start included.
Outcome theirs(const Sheet &sheet, const QTemporaryDir &folder)
{
    const GreyPicture grey = prepared(sheet.picture, sheet.style);
    QFile file(folder.filePath(u"sheet.pgm"_s));
    if (!file.open(QFile::WriteOnly))
        return {};
    file.write("P5 " + QByteArray::number(grey.width) + ' ' + QByteArray::number(grey.height) + " 255\n");
    file.write(reinterpret_cast<const char *>(grey.pixels.data()), static_cast<qint64>(grey.pixels.size()));
    file.close();
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"OMP_THREAD_LIMIT"_s, u"1"_s);
    program.setProcessEnvironment(environment);
    QElapsedTimer time;
    time.start();
    program.start(u"tesseract"_s,
        {file.fileName(), u"stdout"_s, u"--psm"_s, u"11"_s, u"--oem"_s, u"1"_s, u"--dpi"_s, u"140"_s,
            u"tsv"_s});
    program.waitForFinished(60000);
    const double milliseconds = static_cast<double>(time.nsecsElapsed()) / 1e6;
    return {missedWords(sheet, linesOfTable(program.readAllStandardOutput(), {grey.width, grey.height})),
        milliseconds};
}

struct Sum {
    int words = 0;
    qsizetype missed = 0;
    qsizetype missedTheirs = 0;
    std::vector<double> times;
    std::vector<double> timesTheirs;
};

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

double rightPercent(qsizetype missed, int words)
{
    return 100.0 * static_cast<double>(words - missed) / words;
}

void print(const char *name, const Sum &sum, double goal)
{
    const double ratio = median(sum.times) / median(sum.timesTheirs);
    std::printf(
        "%-10s %4d words  right %5.1f %% (goal %.0f)  program %5.1f %%  warm %4.0f ms  program %4.0f ms  "
        "ratio %.2f (goal 0.75)\n",
        name, sum.words, rightPercent(sum.missed, sum.words), goal, rightPercent(sum.missedTheirs, sum.words),
        median(sum.times), median(sum.timesTheirs), ratio);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const QTemporaryDir folder;
    TesseractEngine engine;
    Sum plain;
    Sum subtitles;
    const std::vector<Sheet> sheets = ocrCorpus();
    ours(engine, sheets.front()); // loads it
    for (const Sheet &sheet : sheets) {
        Sum &sum = sheet.style == RecognitionStyle::plain ? plain : subtitles;
        const Outcome own = ours(engine, sheet);
        const Outcome other = theirs(sheet, folder);
        sum.words += static_cast<int>(sheet.words.size());
        sum.missed += own.missed.size();
        sum.missedTheirs += other.missed.size();
        sum.times.push_back(own.milliseconds);
        sum.timesTheirs.push_back(other.milliseconds);
        std::printf("%-24s %3zu words, missed %2lld, program %2lld  %5.0f ms, program %5.0f ms  %s\n",
            qPrintable(sheet.name), sheet.words.size(), static_cast<long long>(own.missed.size()),
            static_cast<long long>(other.missed.size()), own.milliseconds, other.milliseconds,
            qPrintable(own.missed.join(u' ')));
    }
    std::printf("\n");
    print("plain", plain, 98);
    print("subtitles", subtitles, 80);
    return 0;
}
