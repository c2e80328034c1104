#include "wordbook/WordListState.h"

#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class WordListStateTest : public testing::Test, protected Notebook {
protected:
    WordListStateTest()
    {
        for (const char *headword : {"deploy", "reluctant", "rewrite", "flaky"}) // the last is the newest
            ids[QString::fromUtf8(headword)] = save(headword);
        store.addSentenceNote({.id = noteId, .question = u"为什么？"_s, .original = u"It was done."_s});
    }

    QStringList titles() const
    {
        QStringList all;
        for (const ListRow &row : state.rows())
            all.append(row.title);
        return all;
    }
    /// The headword of what is read on the word tab; empty for none.
    QString shown() const
    {
        const DetailFacts detail = state.detail();
        const auto *word = std::get_if<WordFacts>(&detail);
        return word ? word->entry.headword : QString();
    }

    const QUuid noteId = QUuid::createUuid();
    QMap<QString, QUuid> ids;
    WordListState state{store, config, clock};
};

} // namespace

TEST_F(WordListStateTest, EachTabKeepsWhatIsChosenThere)
{
    const std::pair<WordListTab, RowKey> choices[]{{WordListTab::words, ids[u"flaky"_s]},
        {WordListTab::grammar, GrammarPoint::passive}, {WordListTab::affixes, Affix::re},
        {WordListTab::notes, noteId}};
    for (const auto &[tab, key] : choices) {
        state.setTab(tab);
        EXPECT_EQ(state.chosen(), RowKey());
        EXPECT_EQ(state.detail(), DetailFacts());
        state.choose(key);
    }
    for (const auto &[tab, key] : choices) {
        state.setTab(tab);
        EXPECT_EQ(state.chosen(), key);
        EXPECT_NE(state.detail(), DetailFacts());
    }
    store.deleteSentenceNote(noteId);
    EXPECT_EQ(state.detail(), DetailFacts()) << "gone from the notebook";
    EXPECT_EQ(state.emptyText(), emptyListText(WordListTab::notes, false));
}

TEST_F(WordListStateTest, SearchAndFilterNarrowTheRowsButNotWhatIsRead)
{
    state.choose(ids[u"deploy"_s]);
    state.setSearch(u"RE"_s);
    EXPECT_THAT(titles(), ElementsAre(u"rewrite"_s, u"reluctant"_s));
    EXPECT_EQ(shown(), u"deploy"_s);
    store.rest(ids[u"rewrite"_s], 1);
    state.setStageFilter(DisplayStage::resting);
    EXPECT_THAT(titles(), ElementsAre(u"rewrite"_s));
    state.setStageFilter(DisplayStage::mastered);
    EXPECT_EQ(state.emptyText(), u"没有找到"_s);
    EXPECT_EQ(state.header(), u"在学 0 · 共 4 个"_s) << "of all words";
}

TEST_F(WordListStateTest, AfterADeletionTheNextOfTheShownRowsIsChosen)
{
    state.setSearch(u"re"_s);
    state.choose(ids[u"rewrite"_s]);
    state.remove(ids[u"flaky"_s]);
    EXPECT_EQ(shown(), u"rewrite"_s) << "another one was deleted";
    state.remove(state.chosen());
    EXPECT_EQ(shown(), u"reluctant"_s);
    state.setSearch({});
    EXPECT_THAT(titles(), ElementsAre(u"reluctant"_s, u"deploy"_s));
    state.choose(ids[u"deploy"_s]);
    state.remove(state.chosen());
    EXPECT_EQ(shown(), u"reluctant"_s) << "the one above, where none is below";
    state.remove(state.chosen());
    EXPECT_EQ(state.chosen(), RowKey());
    EXPECT_EQ(state.emptyText(), emptyListText(WordListTab::words, false)) << "though there are notes";
    EXPECT_EQ(store.deleted().size(), 4);

    state.setTab(WordListTab::grammar);
    state.remove(GrammarPoint::passive);
    EXPECT_EQ(store.deleted().size(), 4) << "a grammar point is no record";
    state.setTab(WordListTab::notes);
    state.remove(noteId);
    EXPECT_TRUE(store.sentenceNotes().isEmpty());
}

} // namespace nimbrelle
