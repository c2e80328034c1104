#include "wordbook/views/WordListView.h"

#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "notebook/WordStore.h"
#include "widgets/Controls.h"
#include "widgets/FocusPlace.h"
#include "widgets/Segments.h"
#include "wordbook/views/KnowledgeDetail.h"
#include "wordbook/views/NoteView.h"
#include "wordbook/views/NotebookList.h"
#include "wordbook/views/WordDetail.h"

#include <QActionGroup>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStackedWidget>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

// In points.
constexpr double sideWidth = 264;
constexpr double leastSideWidth = 240;
constexpr double leastWidth = 680;
constexpr double sideMargin = 12;
constexpr double textInset = 18;

constexpr std::array tabs{WordListTab::words, WordListTab::grammar, WordListTab::affixes, WordListTab::notes};

QString nameOf(WordListTab tab)
{
    static constexpr std::array names{"wordRows", "grammarRows", "affixRows", "noteRows"};
    return QString::fromLatin1(names.at(static_cast<std::size_t>(tab)));
}

QString nameOf(const std::optional<DisplayStage> &stage)
{
    return stage ? label(*stage) : u"全部"_s;
}

} // namespace

WordListView::WordListView(const NotebookParts &parts) : m_parts(parts), m_theme(parts.theme)
{
    setObjectName(u"wordList"_s);
    notebook::makeColumn(this);
    m_detailSoon.setSingleShot(true);
    connect(&m_detailSoon, &QTimer::timeout, this, &WordListView::refreshDetail);
    connect(&parts.theme, &Theme::changed, this, &WordListView::build);
    connect(&parts.words, &WordStore::changing, this, &WordListView::refreshSoon);
    connect(&parts.config, &ConfigStore::configChanged, this, &WordListView::refreshSoon);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, &WordListView::focusSearch);
    build();
}

QSize WordListView::sizeHint() const
{
    return {m_theme.points(760), m_theme.points(520)};
}

/// On a screen too narrow for both, the lists give room to what is read.
void WordListView::resizeEvent(QResizeEvent *)
{
    const int missing = std::max(m_theme.points(leastWidth) - width(), 0);
    m_side->setFixedWidth(std::max(m_theme.points(sideWidth) - missing, m_theme.points(leastSideWidth)));
}

void WordListView::showEvent(QShowEvent *)
{
    refresh(); // days pass too while nobody looks
    if (isAncestorOf(window()->focusWidget()))
        return;
    if (list(m_tab).isVisible())
        list(m_tab).setFocus();
    else
        m_searchField->setFocus();
}

void WordListView::build()
{
    const FocusPlace focus = m_content ? FocusPlace::in(*m_content) : FocusPlace();
    delete std::exchange(m_content, new QWidget);
    layout()->addWidget(m_content);
    m_content->show();
    auto *row = new QHBoxLayout(m_content);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(makeSide());
    QFrame *line = makeArea(u"line"_s);
    line->setFixedWidth(1);
    row->addWidget(line);
    row->addWidget(makeDetailPane(), 1);
    setMinimumSize(boundedByScreen(*this, {m_theme.points(leastWidth), m_theme.points(360)}));
    m_shown = {};
    refresh();
    list(m_tab).reveal(chosen());
    focus.restore(*m_content, list(m_tab));
}

QWidget *WordListView::makeSide()
{
    auto *side = new QWidget;
    m_side = side;
    auto *column = new QVBoxLayout(side);
    const int margin = m_theme.points(sideMargin);
    column->setContentsMargins(0, margin, 0, 0);
    column->setSpacing(0);
    addSearch();
    auto *top = new QVBoxLayout;
    top->setContentsMargins(margin, 0, margin, 0);
    top->setSpacing(m_theme.points(10));
    top->addWidget(makeTabRow());
    top->addWidget(m_searchField);
    column->addLayout(top);
    column->addWidget(makeHeaderRow());
    column->addSpacing(m_theme.points(4));
    column->addWidget(makeLists(), 1);
    return side;
}

QWidget *WordListView::makeTabRow()
{
    auto *holder = new QWidget;
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(m_theme.points(8));
    QStringList labels;
    for (const Tab tab : tabs)
        labels.append(label(tab));
    m_tabs = new Segments(m_theme, u"tab"_s, labels);
    m_tabs->choose(static_cast<int>(m_tab));
    connect(m_tabs, &Segments::picked, this, [this](int which) { setTab(static_cast<Tab>(which)); });
    row->addWidget(m_tabs, 1);
    auto *addWord = makeButton(m_theme, u"addWord"_s, {}, {ButtonKind::soft, Icon::plus});
    addWord->setProperty("shape", u"square"_s);
    addWord->setFixedSize(m_theme.points(30), m_theme.points(30));
    addWord->setAccessibleName(u"添加生词"_s);
    addWord->setToolTip(u"手动添加生词"_s);
    connect(addWord, &QPushButton::clicked, this, &WordListView::addWordRequested);
    row->addWidget(addWord);
    return holder;
}

void WordListView::addSearch()
{
    m_searchField = makeField(m_theme, u"search"_s, u"搜索"_s, {});
    m_searchField->setProperty("shape", u"search"_s);
    m_searchField->setText(m_search);
    QLabel *lens = makeIconLabel(m_theme, Icon::magnifier, 14, m_theme.colour(Tone::ink2));
    lens->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto *inside = new QHBoxLayout(m_searchField);
    inside->setContentsMargins(m_theme.points(10), 0, 0, 0);
    inside->addWidget(lens);
    inside->addStretch();
    m_searchField->setTextMargins(m_theme.points(20), 0, 0, 0);
    connect(m_searchField, &QLineEdit::textChanged, this, &WordListView::setSearch);
    connect(m_searchField, &QLineEdit::returnPressed, this, [this] { list(m_tab).setFocus(); });
    const auto key = [this](Qt::Key which, auto act) {
        connect(new QShortcut(which, m_searchField, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, act);
    };
    key(Qt::Key_Down, [this] { list(m_tab).setFocus(); });
    key(Qt::Key_Escape, [this] { m_searchField->clear(); });
}

QWidget *WordListView::makeHeaderRow()
{
    m_headerRow = new QWidget;
    auto *row = new QHBoxLayout(m_headerRow);
    row->setContentsMargins(m_theme.points(textInset), m_theme.points(8), m_theme.points(14), 0);
    m_header = makeLabel(m_theme, {}, TextType::small, Tone::ink2);
    m_header->setObjectName(u"header"_s);
    row->addWidget(m_header);
    row->addStretch();
    m_stageButton = makeButton(m_theme, u"stageFilter"_s, nameOf(m_stageFilter),
        {ButtonKind::plain, Icon::chevronDown, TextType::small, Tone::ink, IconPlace::behind});
    connect(m_stageButton, &QPushButton::clicked, this, &WordListView::showStageMenu);
    row->addWidget(m_stageButton);
    return m_headerRow;
}

void WordListView::showStageMenu()
{
    auto *menu = new QMenu(m_stageButton);
    menu->setObjectName(u"stageMenu"_s);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto *group = new QActionGroup(menu);
    const auto add = [&](std::optional<DisplayStage> stage) {
        QAction *item = menu->addAction(nameOf(stage), this, [this, stage] { setStageFilter(stage); });
        item->setCheckable(true);
        item->setChecked(stage == m_stageFilter);
        group->addAction(item);
    };
    add(std::nullopt);
    for (const DisplayStage stage : allCases<DisplayStage>())
        add(stage);
    menu->popup(m_stageButton->mapToGlobal(
        QPoint(m_stageButton->width() - menu->sizeHint().width(), m_stageButton->height())));
}

QWidget *WordListView::makeLists()
{
    m_lists = new QStackedWidget;
    for (const Tab tab : tabs) {
        m_listOf.at(static_cast<std::size_t>(tab)) = makeList(tab);
        m_lists->addWidget(&list(tab));
    }
    QWidget *empty = notebook::makeEmptyText(m_theme, u"emptyList"_s, {});
    empty->layout()->setContentsMargins(m_theme.points(sideMargin), 0, m_theme.points(sideMargin), 0);
    m_emptyText = empty->findChild<QLabel *>(u"emptyList"_s);
    m_lists->addWidget(empty);
    return m_lists;
}

NotebookList *WordListView::makeList(Tab tab)
{
    const bool isCatalogue = tab == Tab::grammar || tab == Tab::affixes;
    const double height = tab == Tab::notes ? 52 : isCatalogue ? 32 : 36;
    auto *rows = new NotebookList(m_theme, nameOf(tab), label(tab), {height, isCatalogue});
    connect(rows, &NotebookList::chosen, this, &WordListView::choose);
    connect(rows, &NotebookList::deleteRequested, this, &WordListView::remove);
    return rows;
}

QWidget *WordListView::makeDetailPane()
{
    QFrame *pane = makeArea(u"detail"_s);
    m_detail = new QScrollArea;
    m_detail->setObjectName(u"detail"_s);
    m_detail->setFrameShape(QFrame::NoFrame);
    m_detail->setWidgetResizable(true);
    m_detail->setFocusPolicy(Qt::TabFocus);
    m_detail->setAccessibleName(u"详情"_s);
    m_detail->setProperty("kind", u"reading"_s);
    m_detail->viewport()->setAutoFillBackground(false);
    connect(m_detail->verticalScrollBar(), &QScrollBar::rangeChanged, this, &WordListView::setDetailMargins);
    notebook::makeColumn(pane)->addWidget(m_detail);
    return pane;
}

NotebookList &WordListView::list(Tab tab) const
{
    return *m_listOf.at(static_cast<std::size_t>(tab));
}

/// The store is in the middle of a change, and one operation makes several.
void WordListView::refreshSoon()
{
    if (isVisible() && !std::exchange(m_isRefreshDue, true))
        QMetaObject::invokeMethod(this, &WordListView::refresh, Qt::QueuedConnection);
}

void WordListView::refresh()
{
    m_isRefreshDue = false;
    const QString placeholder = searchPlaceholder(m_tab);
    m_searchField->setVisible(!placeholder.isEmpty());
    m_searchField->setPlaceholderText(placeholder);
    m_headerRow->setVisible(m_tab == Tab::words);
    m_header->setText(wordHeader(m_parts.words.learningCount(), m_parts.words.entries().size()));
    m_stageButton->setText(nameOf(m_stageFilter));
    m_stageButton->setAccessibleName(nameOf(m_stageFilter));
    refreshList();
    refreshDetail();
}

void WordListView::refreshList()
{
    const QList<ListRow> rows = rowsOf(m_tab);
    list(m_tab).setRows(rows, chosen());
    m_emptyText->setText(emptyListText(m_tab, isFiltered()));
    m_lists->setCurrentIndex(
        static_cast<int>(rows.isEmpty() ? tabs.size() : static_cast<std::size_t>(m_tab)));
}

QList<ListRow> WordListView::rowsOf(Tab tab) const
{
    const WordStore &words = m_parts.words;
    switch (tab) {
    case Tab::words:
        return wordRows(
            words.entries(), {m_search, m_stageFilter}, m_parts.config.config(), m_parts.clock.now());
    case Tab::grammar:
        return grammarRows(words.grammarEncounters());
    case Tab::affixes:
        return affixRows(words.affixEncounters());
    case Tab::notes:
        return noteRows(words.sentenceNotes(), m_search);
    }
    Q_UNREACHABLE();
}

bool WordListView::isFiltered() const
{
    return m_tab == Tab::words ? !m_parts.words.entries().isEmpty()
                               : !m_parts.words.sentenceNotes().isEmpty();
}

WordListView::DetailFacts WordListView::factsOfChosen() const
{
    const RowKey key = chosen();
    if (const auto *point = std::get_if<GrammarPoint>(&key))
        return grammarFacts(m_parts.words, *point, m_search);
    if (const auto *affix = std::get_if<Affix>(&key))
        return affixFacts(m_parts.words, *affix);
    const auto *id = std::get_if<QUuid>(&key);
    if (!id)
        return {};
    if (m_tab == Tab::words) {
        auto facts = wordFacts(m_parts.words, m_parts.config.config(), m_parts.clock.now(), *id);
        return facts ? DetailFacts(*std::move(facts)) : DetailFacts();
    }
    const auto &notes = m_parts.words.sentenceNotes();
    const auto note = std::ranges::find(notes, *id, &AINote::id);
    return note == notes.cend() ? DetailFacts() : DetailFacts(*note);
}

/// Leaves the pane alone, with what is selected in it, when it would come out the same.
void WordListView::refreshDetail()
{
    m_detailSoon.stop();
    DetailFacts facts = factsOfChosen();
    if (facts == m_shown && m_shownTab == m_tab && m_detail->widget())
        return;
    const bool isSame = facts.index() == m_shown.index() && m_shownTab == m_tab;
    m_shownTab = m_tab;
    m_shown = std::move(facts);
    showDetail(makeDetail(m_shown), isSame ? m_detail->verticalScrollBar()->value() : 0);
}

void WordListView::showDetail(QWidget *pane, int stand)
{
    const FocusPlace focus = FocusPlace::in(*m_detail);
    pane->setProperty("kind", u"scrolled"_s);
    pane->setAutoFillBackground(false);
    if (QWidget *old = m_detail->takeWidget()) { // later, since the button that was pressed is in it
        old->setParent(nullptr);
        old->deleteLater();
    }
    m_detail->setWidget(pane);
    setDetailMargins();
    pane->show();
    pane->layout()->activate();
    m_detail->verticalScrollBar()->setValue(stand);
    focus.restore(*pane, list(m_tab));
}

QWidget *WordListView::makeDetail(const DetailFacts &facts)
{
    QWidget *detail = nullptr;
    if (const auto *word = std::get_if<WordFacts>(&facts)) {
        auto *pane = new WordDetail(m_parts, *word);
        connect(pane, &WordDetail::wordChosen, this, &WordListView::goToWord);
        detail = pane;
    } else if (const auto *grammar = std::get_if<GrammarFacts>(&facts)) {
        detail = new GrammarDetail(m_parts, *grammar);
    } else if (const auto *affix = std::get_if<AffixFacts>(&facts)) {
        detail = new AffixDetail(m_parts, *affix);
    } else if (const auto *note = std::get_if<AINote>(&facts)) {
        detail = new NoteView(m_parts, *note, true, [this, id = note->id] { remove(id); });
    } else {
        return notebook::makeEmptyText(m_theme, u"nothingChosen"_s, nothingChosenText(m_tab));
    }
    return detail;
}

/// A scroll bar takes its breadth from the margin, so that lines keep their length.
void WordListView::setDetailMargins()
{
    if (!m_detail->widget() || std::holds_alternative<std::monostate>(m_shown))
        return;
    const int frame = m_detail->frameWidth();
    const int side = m_theme.points(28) - frame;
    const bool scrolls = m_detail->verticalScrollBar()->maximum() > 0;
    m_detail->widget()->layout()->setContentsMargins(
        side, m_theme.points(20) - frame, side - (scrolls ? m_theme.points(8) : 0), side);
}

void WordListView::setTab(Tab tab)
{
    m_tab = tab;
    refresh();
}

void WordListView::setSearch(const QString &search)
{
    m_search = search;
    refresh();
}

void WordListView::setStageFilter(std::optional<DisplayStage> stage)
{
    m_stageFilter = stage;
    refresh();
}

RowKey WordListView::chosen() const
{
    const auto keyOf = [](const auto &selection) { return selection ? RowKey(*selection) : RowKey(); };
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

void WordListView::choose(const RowKey &key)
{
    const auto take = [&key]<class Key>(std::optional<Key> &selection) {
        const Key *value = std::get_if<Key>(&key);
        selection = value ? std::optional(*value) : std::nullopt;
    };
    if (m_tab == Tab::words)
        take(m_selection);
    else if (m_tab == Tab::grammar)
        take(m_grammarSelection);
    else if (m_tab == Tab::affixes)
        take(m_affixSelection);
    else
        take(m_noteSelection);
    m_shown = {}; // another one begins at its top
    m_detailSoon.start();
}

void WordListView::goToWord(const QUuid &id)
{
    choose(id);
    refreshList();
    list(m_tab).reveal(id);
}

/// The next one is chosen, so that the keyboard can go on.
void WordListView::remove(const RowKey &key)
{
    const auto *id = std::get_if<QUuid>(&key);
    if (!id)
        return;
    const RowKey next = list(m_tab).neighbourOf(key);
    const QUuid gone = *id; // what the key belongs to may go with the record
    const bool wasChosen = chosen() == key;
    if (m_tab == Tab::words)
        m_parts.words.remove(gone);
    else
        m_parts.words.deleteSentenceNote(gone);
    if (wasChosen)
        choose(next);
    refreshList();
}

void WordListView::focusSearch()
{
    m_searchField->setFocus(Qt::ShortcutFocusReason);
    m_searchField->selectAll();
}

} // namespace nimbrelle
