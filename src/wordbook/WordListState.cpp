#include "wordbook/WordListState.h"

#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "notebook/WordStore.h"

#include <algorithm>

namespace nimbrelle {

namespace {

RowKey neighbourOf(const QList<ListRow> &rows, const RowKey &key)
{
    const auto row = std::ranges::find(rows, key, &ListRow::key) - rows.cbegin();
    if (row + 1 < rows.size())
        return rows[row + 1].key;
    return row > 0 && row < rows.size() ? rows[row - 1].key : RowKey();
}

template <class Key> RowKey keyOf(const std::optional<Key> &selection)
{
    return selection ? RowKey(*selection) : RowKey();
}

template <class Key> std::optional<Key> selectionOf(const RowKey &key)
{
    const Key *value = std::get_if<Key>(&key);
    return value ? std::optional(*value) : std::nullopt;
}

} // namespace

WordListState::WordListState(WordStore &words, const ConfigStore &config, Clock &clock)
    : m_words(words), m_config(config), m_clock(clock), m_deletions(words, clock)
{
}

QList<ListRow> WordListState::rows() const
{
    switch (m_tab) {
    case Tab::words:
        return wordRows(m_words.entries(), {.search = m_search, .stage = m_stageFilter}, m_config.config(),
            m_clock.now());
    case Tab::grammar:
        return grammarRows(m_words.grammarEncounters());
    case Tab::affixes:
        return affixRows(m_words.affixEncounters());
    case Tab::notes:
        return noteRows(m_words.sentenceNotes(), m_search);
    }
    Q_UNREACHABLE();
}

QString WordListState::header() const
{
    return wordHeader(m_words.learningCount(), m_words.entries().size());
}

QString WordListState::emptyText() const
{
    const bool hasRecords =
        m_tab == Tab::words ? !m_words.entries().isEmpty() : !m_words.sentenceNotes().isEmpty();
    return emptyListText(m_tab, hasRecords);
}

RowKey WordListState::chosen() const
{
    switch (m_tab) {
    case Tab::words:
        return keyOf(m_selection);
    case Tab::grammar:
        return keyOf(m_grammarSelection);
    case Tab::affixes:
        return keyOf(m_affixSelection);
    case Tab::notes:
        return keyOf(m_noteSelection);
    }
    Q_UNREACHABLE();
}

void WordListState::choose(const RowKey &key)
{
    switch (m_tab) {
    case Tab::words:
        m_selection = selectionOf<QUuid>(key);
        return;
    case Tab::grammar:
        m_grammarSelection = selectionOf<GrammarPoint>(key);
        return;
    case Tab::affixes:
        m_affixSelection = selectionOf<Affix>(key);
        return;
    case Tab::notes:
        m_noteSelection = selectionOf<QUuid>(key);
        return;
    }
}

DetailFacts WordListState::detail() const
{
    const RowKey key = chosen();
    if (const auto *point = std::get_if<GrammarPoint>(&key))
        return grammarFacts(m_words, *point, m_search);
    if (const auto *affix = std::get_if<Affix>(&key))
        return affixFacts(m_words, *affix);
    const auto *id = std::get_if<QUuid>(&key);
    return id ? detailOfRecord(*id) : DetailFacts();
}

DetailFacts WordListState::detailOfRecord(const QUuid &id) const
{
    if (m_tab == Tab::words) {
        auto facts = wordFacts(m_words, m_config.config(), m_clock.now(), id);
        return facts ? DetailFacts(*std::move(facts)) : DetailFacts();
    }
    const auto &notes = m_words.sentenceNotes();
    const auto note = std::ranges::find(notes, id, &AINote::id);
    return note == notes.cend() ? DetailFacts() : DetailFacts(*note);
}

void WordListState::remove(RowKey key)
{
    const auto *id = std::get_if<QUuid>(&key);
    if (!id)
        return;
    const bool isChosen = chosen() == key;
    if (isChosen)
        choose(neighbourOf(rows(), key));
    m_deletions.remove({.tab = m_tab, .id = *id, .wasChosen = isChosen});
}

RowKey WordListState::undo()
{
    const auto back = m_deletions.undo();
    if (!back)
        return {};
    m_tab = back->tab;
    if (back->wasChosen)
        choose(back->id);
    return back->id;
}

} // namespace nimbrelle
