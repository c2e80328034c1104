#include "Ratios.h"
#include "SampleNotebook.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/RecordFile.h"
#include "notebook/LearningLog.h"
#include "notebook/WordStore.h"
#include "platform/Speaker.h"
#include "widgets/Theme.h"
#include "wordbook/views/WordListView.h"

#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QTemporaryDir>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace nimbrelle::bench;

namespace {

struct Silence final : Speaker {
    void speak(const QString &) override { }
};

/// A notebook of so many words with its window, shown on a screen that is not there.
struct Window {
    explicit Window(qsizetype count) : wordCount(count) { }

    /// To be cleared while there is still an application.
    static std::map<int64_t, std::unique_ptr<Window>> &all()
    {
        static std::map<int64_t, std::unique_ptr<Window>> windows;
        return windows;
    }
    static Window &of(const benchmark::State &state)
    {
        auto &window = all()[state.range(0)];
        if (!window)
            window = std::make_unique<Window>(state.range(0));
        return *window;
    }

    const AppPaths &prepared() const
    {
        QList<WordEntry> sample = sampleWords(wordCount, SystemClock::shared().now());
        for (qsizetype i = 0; i < sample.size(); ++i) // families of ten, as languages have them
            sample[i].familyRoot = u"root%1"_s.arg(i / 10);
        writeRecordFile(paths.words, sample);
        return paths;
    }
    WordbookParts parts() { return {theme, SystemClock::shared(), config, words, speaker}; }
    WordListView &view()
    {
        if (!m_view) {
            theme.applyToApplication();
            m_view = std::make_unique<WordListView>(parts());
            m_view->resize(m_view->sizeHint());
            m_view->show();
            draw(*m_view);
        }
        return *m_view;
    }
    static void draw(QWidget &widget)
    {
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(widget.grab());
    }

    qsizetype wordCount;
    QTemporaryDir directory;
    AppPaths paths{directory.path()};
    ConfigStore config{paths, SystemClock::shared()};
    LearningLog log{paths, SystemClock::shared()};
    WordStore words{prepared(), SystemClock::shared(), config, log};
    Silence speaker;
    Theme theme;

private:
    std::unique_ptr<WordListView> m_view;
};

void filterRows(benchmark::State &state)
{
    Window &window = Window::of(state);
    const WordFilter filter{u"77"_s, std::nullopt};
    const Timestamp now = SystemClock::shared().now();
    for (auto _ : state)
        benchmark::DoNotOptimize(wordRows(window.words.entries(), filter, window.config.config(), now));
}

/// A letter more in the search field, until what passes is on the screen.
void typeInSearch(benchmark::State &state)
{
    WordListView &view = Window::of(state).view();
    auto *field = view.findChild<QLineEdit *>(u"search"_s);
    const QStringList typed{u"7"_s, u"77"_s, u"词"_s, QString()};
    qsizetype i = 0;
    for (auto _ : state) {
        field->setText(typed[i++ % typed.size()]);
        Window::draw(view);
    }
    field->clear();
}

void scrollPage(benchmark::State &state)
{
    WordListView &view = Window::of(state).view();
    QScrollBar *bar = view.findChild<QListView *>(u"wordRows"_s)->verticalScrollBar();
    for (auto _ : state) {
        bar->setValue(bar->value() + bar->pageStep() > bar->maximum() ? 0 : bar->value() + bar->pageStep());
        Window::draw(view);
    }
}

void chooseNext(benchmark::State &state)
{
    WordListView &view = Window::of(state).view();
    auto *list = view.findChild<QListView *>(u"wordRows"_s);
    int row = 0;
    for (auto _ : state) {
        list->setCurrentIndex(list->model()->index(++row % list->model()->rowCount(), 0));
        Window::draw(view);
    }
}

void firstShow(benchmark::State &state)
{
    Window &window = Window::of(state);
    window.view(); // the theme is in place, as it is in the program
    for (auto _ : state) {
        WordListView view(window.parts());
        view.resize(view.sizeHint());
        view.show();
        Window::draw(view);
    }
}

BENCHMARK(filterRows)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(typeInSearch)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(scrollPage)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(chooseNext)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(firstShow)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const int result = runWithRatios(argc, argv,
        {
            {"search in 10,000 words / in 1,000", "typeInSearch/10000", {"typeInSearch/1000"}, 6.0},
            {"page of 10,000 words / of 1,000", "scrollPage/10000", {"scrollPage/1000"}, 1.5},
            {"next of 10,000 words / of 1,000", "chooseNext/10000", {"chooseNext/1000"}, 3.0},
            {"next of 10,000 words / first show of the window", "chooseNext/10000", {"firstShow/10000"}, 3.0},
            {"first show of 10,000 words / of 1,000", "firstShow/10000", {"firstShow/1000"}, 6.0},
        });
    Window::all().clear();
    return result;
}
