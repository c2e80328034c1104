#include "OcrCorpus.h"
#include "PointCorpus.h"
#include "platform/linux/ocr/EngineText.h"
#include "platform/linux/ocr/GreyPicture.h"
#include "platform/linux/ocr/TesseractEngine.h"
#include "screen/ScreenOCR.h"

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
        EngineWord word{.text = QString::fromUtf8(cells.at(11)), .box = box, .unitBoxes = {}};
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

/// What opens where a pointer rests, and what context it gets.
struct Rest {
    int points = 0;
    int right = 0; ///< the drawn word, or nothing where there is none
    int wrong = 0; ///< a card for something that isn't there
    int strange = 0; ///< contexts with words that don't stand in the English text
};

bool isStrange(const QString &context, const Scenery &scenery)
{
    return std::ranges::any_of(context.split(u' ', Qt::SkipEmptyParts),
        [&](const QString &word) { return !scenery.english.contains(word); });
}

QList<ScreenOCR::Line> linesIn(TesseractEngine &engine, const Picture &picture, RecognitionStyle style)
{
    return ScreenOCR::linesFrom(engine.read(picture, style, {}, {}).lines);
}

Rest rest(TesseractEngine &engine, Subject subject, ScreenOCR::Seek seek)
{
    Rest sum;
    for (const Scenery &scenery : sceneries(subject)) {
        const auto plain = linesIn(engine, scenery.picture, RecognitionStyle::plain);
        const auto subtitles = linesIn(engine, scenery.picture, RecognitionStyle::subtitles);
        for (const RestingPoint &point : scenery.points) {
            auto seen = ScreenOCR::analyze(ScreenOCR::legible(plain, point.at), point.at, seek);
            if (!seen)
                seen = ScreenOCR::analyze(ScreenOCR::legible(subtitles, point.at), point.at, seek);
            QString word = seen ? seen->word.value_or(QString()) : QString();
            if (seek == ScreenOCR::Seek::sureWord && word.size() < 2)
                word.clear(); // opens nothing
            const bool isRight =
                word.isEmpty() ? point.word.isEmpty() : !point.word.isEmpty() && point.word.contains(word);
            ++sum.points;
            sum.right += isRight ? 1 : 0;
            sum.wrong += !isRight && !word.isEmpty() ? 1 : 0;
            sum.strange += seen && isStrange(seen->context, scenery) ? 1 : 0;
        }
    }
    return sum;
}

void printRests(TesseractEngine &engine)
{
    const std::pair<const char *, Subject> subjects[]{{"english", Subject::english},
        {"highlighted", Subject::highlighted}, {"chinese", Subject::chinese}, {"mixed", Subject::mixed},
        {"icons", Subject::icons}};
    const std::pair<const char *, ScreenOCR::Seek> gestures[]{
        {"resting", ScreenOCR::Seek::sureWord}, {"held", ScreenOCR::Seek::word}};
    for (const auto &[name, subject] : subjects)
        for (const auto &[gesture, seek] : gestures) {
            const Rest seen = rest(engine, subject, seek);
            std::printf("%-11s %-7s %3d points  right %3d  wrong word %3d  strange context %3d\n", name,
                gesture, seen.points, seen.right, seen.wrong, seen.strange);
        }
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
    Sum newSubtitles;
    Sum unseenSubtitles;
    const std::vector<Sheet> sheets = ocrCorpus();
    ours(engine, sheets.front()); // loads it
    for (const Sheet &sheet : sheets) {
        Sum &sum = sheet.style == RecognitionStyle::plain ? plain
            : sheet.name.startsWith(u"new"_s)             ? newSubtitles
            : sheet.name.startsWith(u"unseen"_s)          ? unseenSubtitles
                                                          : subtitles;
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
    print("subtitles", subtitles, 95);
    print("new ones", newSubtitles, 95);
    print("unseen", unseenSubtitles, 95);
    printRests(engine);
    return 0;
}
