#include "shell/MenuBarWord.h"

#include "support/Notebook.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <QCoreApplication>

#include <algorithm>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class MenuWord : public testing::Test, protected Notebook {
protected:
    MenuWord()
    {
        word.setShuffle([](QList<QUuid> &) {});
        QObject::connect(&word, &MenuBarWord::changed, [this] { ++changes; });
    }

    /// The last one saved stands first in the notebook.
    void learn(std::initializer_list<const char *> headwords)
    {
        for (const char *headword : headwords)
            store.startLearning(save(headword));
    }

    QString shown() const
    {
        const auto entry = word.entry();
        return entry ? entry->headword : u"none"_s;
    }

    QString shownNext()
    {
        word.next();
        return shown();
    }

    MenuBarWord word{store, config, log, clock};
    int changes = 0;
};

TEST_F(MenuWord, ShowsEachWordOnceInAPass)
{
    learn({"c", "b", "a"});
    word.start();
    EXPECT_EQ(shown(), u"a"_s);
    EXPECT_EQ(shownNext(), u"b"_s);
    learn({"new"});
    EXPECT_EQ(shownNext(), u"c"_s);
    EXPECT_EQ(shownNext(), u"new"_s) << "what joined waits for the next pass";
}

TEST_F(MenuWord, NeverShowsAWordTwiceInARowAcrossPasses)
{
    learn({"b", "a"});
    word.setShuffle([pass = 0](QList<QUuid> &ids) mutable {
        if (++pass == 2)
            std::reverse(ids.begin(), ids.end());
    });
    EXPECT_EQ(shownNext(), u"a"_s);
    EXPECT_EQ(shownNext(), u"b"_s);
    EXPECT_EQ(shownNext(), u"a"_s) << "b came first in the shuffle";
    store.remove(this->Notebook::word("a").id);
    EXPECT_EQ(shownNext(), u"b"_s);
    EXPECT_EQ(shownNext(), u"b"_s) << "a single word is shown again";
}

TEST_F(MenuWord, ShufflesByDefaultWithoutLosingAny)
{
    learn({"a", "b", "c", "d", "e"});
    MenuBarWord shuffled(store, config, log, clock);
    for (int pass = 0; pass < 3; ++pass) {
        QStringList seen;
        for (int i = 0; i < 5; ++i) {
            shuffled.next();
            seen.append(shuffled.entry()->headword);
        }
        seen.sort();
        EXPECT_EQ(seen.join(QString()), u"abcde"_s);
    }
}

TEST_F(MenuWord, ChangesEveryTwentyMinutes)
{
    learn({"b", "a"});
    word.start();
    clock.advance(1199s);
    EXPECT_EQ(shown(), u"a"_s);
    clock.advance(1s);
    EXPECT_EQ(shown(), u"b"_s);
    clock.advance(1200s);
    EXPECT_EQ(shown(), u"a"_s);
    EXPECT_EQ(changes, 3);
}

TEST_F(MenuWord, ReplacesAWordThatLeftTheSet)
{
    learn({"b", "a"});
    word.start();
    store.rest(this->Notebook::word("a").id, 7);
    EXPECT_EQ(shown(), u"none"_s);
    QCoreApplication::processEvents();
    EXPECT_EQ(shown(), u"b"_s);
    store.remove(this->Notebook::word("b").id);
    QCoreApplication::processEvents();
    EXPECT_EQ(shown(), u"none"_s);
    EXPECT_EQ(word.current(), std::nullopt);
    learn({"c"});
    QCoreApplication::processEvents();
    EXPECT_EQ(shown(), u"c"_s);
}

TEST_F(MenuWord, TellsEvenWithNothingToShow)
{
    word.next();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(word.current(), std::nullopt);
}

TEST_F(MenuWord, KeepsRotatingUnseenWhileSwitchedOff)
{
    learn({"b", "a"});
    configure([](AppConfig &changed) { changed.menuBarWord = false; });
    word.start();
    EXPECT_EQ(shown(), u"none"_s);
    clock.advance(1200s);
    configure([](AppConfig &changed) { changed.menuBarWord = true; });
    EXPECT_EQ(shown(), u"b"_s);
}

TEST_F(MenuWord, LogsOneGlanceForEachWordShown)
{
    word.glance();
    learn({"b", "a"});
    log.replaceAll({});
    word.next();
    word.glance();
    word.glance();
    word.next();
    word.glance();
    EXPECT_EQ(events(), (QStringList{u"glance a"_s, u"glance b"_s}));
}

TEST_F(MenuWord, MayGoWhileItWaits)
{
    learn({"a"});
    auto brief = std::make_unique<MenuBarWord>(store, config, log, clock);
    brief->start();
    brief.reset();
    clock.advance(1200s);
    EXPECT_EQ(clock.pending(), 0);
}

} // namespace
