#pragma once

#include "wordbook/Deletions.h"
#include "wordbook/WordFacts.h"
#include "wordbook/WordList.h"

namespace nimbrelle {

class ConfigStore;

/// What is to be read of the chosen word, point, affix or note; nothing when none is chosen or it is gone.
using DetailFacts = std::variant<std::monostate, WordFacts, GrammarFacts, AffixFacts, AINote>;

/// What the notebook's window shows: a tab, a search and a filter, and for each tab what is chosen there. It
/// holds no copy of the notebook; rows and details are read from the store at each call. Main thread only;
/// all handed in must outlive it.
class WordListState {
public:
    using Tab = WordListTab;

    WordListState(WordStore &words, const ConfigStore &config, Clock &clock);

    Tab tab() const { return m_tab; }
    void setTab(Tab tab) { m_tab = tab; }
    const QString &search() const { return m_search; }
    void setSearch(const QString &search) { m_search = search; }
    std::optional<DisplayStage> stageFilter() const { return m_stageFilter; }
    void setStageFilter(std::optional<DisplayStage> stage) { m_stageFilter = stage; }

    /// @name Of the tab
    /// @{
    QList<ListRow> rows() const;
    /// For the place of an empty list.
    QString emptyText() const;
    /// Need not be among the rows.
    RowKey chosen() const;
    void choose(const RowKey &key);
    DetailFacts detail() const;
    /// Deletes a word or a note. If it was chosen, the one below is, or else the one above, so that the
    /// keyboard can go on.
    void remove(RowKey key);
    /// @}

    /// What can be taken back, on all tabs together.
    const Deletions &deletions() const { return m_deletions; }
    /// Takes the latest deletion back and opens the record's tab; it is chosen again if it was. Returns its
    /// row, or none.
    RowKey undo();

    /// Above the words, whatever the filter.
    QString header() const;

private:
    DetailFacts detailOfRecord(const QUuid &id) const;

    WordStore &m_words;
    const ConfigStore &m_config;
    const Clock &m_clock;
    Deletions m_deletions;

    QString m_search;
    Tab m_tab = Tab::words;
    std::optional<QUuid> m_selection;
    std::optional<QUuid> m_noteSelection;
    std::optional<GrammarPoint> m_grammarSelection;
    std::optional<Affix> m_affixSelection;
    std::optional<DisplayStage> m_stageFilter;
};

} // namespace nimbrelle
