#include "wordbook/views/WordListView.h"

#include "frame/ConfigStore.h"
#include "notebook/WordStore.h"
#include "widgets/Controls.h"
#include "widgets/FocusPlace.h"
#include "widgets/Layouts.h"
#include "widgets/Segments.h"
#include "wordbook/views/DetailPane.h"
#include "wordbook/views/KnowledgeDetail.h"
#include "wordbook/views/NoteView.h"
#include "wordbook/views/NotebookList.h"
#include "wordbook/views/PaneParts.h"
#include "wordbook/views/UndoLine.h"
#include "wordbook/views/WordDetail.h"

#include <QActionGroup>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
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

WordListView::WordListView(const WordbookParts &parts)
    : m_parts(parts), m_theme(parts.theme), m_state(parts.words, parts.config, parts.clock)
{
    setObjectName(u"wordList"_s);
    bareLayout<QVBoxLayout>(this, 0);
    m_detailSoon.setSingleShot(true);
    connect(&m_detailSoon, &QTimer::timeout, this, &WordListView::refreshDetail);
    connect(&parts.theme, &Theme::changed, this, &WordListView::build);
    connect(&parts.words, &WordStore::changing, this, &WordListView::refreshSoon);
    connect(&parts.config, &ConfigStore::configChanged, this, &WordListView::refreshSoon);
    connect(&m_state.deletions(), &Deletions::changed, this, &WordListView::refreshUndoLine);
    connect(
        new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, this, &WordListView::undoDeletion);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, &WordListView::focusSearch);
    build();
}

QSize WordListView::sizeHint() const
{
    return {m_theme.points(760), m_theme.points(520)};
}

/// In a window too narrow for both, the lists are narrowed and not the detail.
void WordListView::resizeEvent(QResizeEvent *)
{
    const int missing = std::max(m_theme.points(leastWidth) - width(), 0);
    m_side->setFixedWidth(std::max(m_theme.points(sideWidth) - missing, m_theme.points(leastSideWidth)));
}

void WordListView::showEvent(QShowEvent *)
{
    refresh(); // days pass too while it is hidden
    if (isAncestorOf(window()->focusWidget()))
        return;
    if (list().isVisible())
        list().setFocus();
    else
        m_searchField->setFocus();
}

void WordListView::build()
{
    const FocusPlace focus = m_content ? FocusPlace::in(*m_content) : FocusPlace();
    delete std::exchange(m_content, new QWidget);
    layout()->addWidget(m_content);
    m_content->show();
    auto *row = bareLayout<QHBoxLayout>(m_content, 0);
    row->addWidget(makeSide());
    QFrame *line = makeArea(u"line"_s);
    line->setFixedWidth(1);
    row->addWidget(line);
    row->addWidget(makeDetailArea(), 1);
    setMinimumSize(boundedByScreen(*this, {m_theme.points(leastWidth), m_theme.points(360)}));
    m_shown.reset();
    refresh();
    list().reveal(m_state.chosen());
    focus.restore(*m_content, list());
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
    m_undoLine = new UndoLine(m_theme);
    connect(m_undoLine, &UndoLine::undoRequested, this, &WordListView::undoDeletion);
    column->addWidget(m_undoLine);
    return side;
}

QWidget *WordListView::makeTabRow()
{
    auto *holder = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(holder, m_theme.points(8));
    QStringList labels;
    for (const Tab tab : tabs)
        labels.append(label(tab));
    m_tabs = new Segments(m_theme, u"tab"_s, labels);
    m_tabs->choose(static_cast<int>(m_state.tab()));
    connect(m_tabs, &Segments::picked, this, [this](int which) {
        m_state.setTab(static_cast<Tab>(which));
        refresh();
    });
    row->addWidget(m_tabs, 1);
    auto *addWord = makeButton(m_theme, u"addWord"_s, {}, {.kind = ButtonKind::soft, .icon = Icon::plus});
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
    m_searchField = makeSearchField(m_theme, u"search"_s, u"搜索"_s);
    m_searchField->setText(m_state.search());
    connect(m_searchField, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_state.setSearch(text);
        refresh();
    });
    connect(m_searchField, &QLineEdit::returnPressed, this, [this] { list().setFocus(); });
    const auto key = [this](Qt::Key which, auto act) {
        connect(new QShortcut(which, m_searchField, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, act);
    };
    key(Qt::Key_Down, [this] { list().setFocus(); });
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
    m_stageButton = makeButton(m_theme, u"stageFilter"_s, nameOf(m_state.stageFilter()),
        {.kind = ButtonKind::plain,
            .icon = Icon::chevronDown,
            .type = TextType::small,
            .iconTone = Tone::ink,
            .iconPlace = IconPlace::behind});
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
        QAction *item = menu->addAction(nameOf(stage), this, [this, stage] {
            m_state.setStageFilter(stage);
            refresh();
        });
        item->setCheckable(true);
        item->setChecked(stage == m_state.stageFilter());
        group->addAction(item);
    };
    add(std::nullopt);
    for (const DisplayStage stage : allCases<DisplayStage>())
        add(stage);
    popUpBelow(*menu, *m_stageButton);
}

QWidget *WordListView::makeLists()
{
    m_lists = new QStackedWidget;
    for (const Tab tab : tabs) {
        NotebookList *rows = makeList(tab);
        m_listOf.at(static_cast<std::size_t>(tab)) = rows;
        m_lists->addWidget(rows);
    }
    QWidget *empty = makeEmptyText(m_theme, u"emptyList"_s, {});
    empty->layout()->setContentsMargins(m_theme.points(sideMargin), 0, m_theme.points(sideMargin), 0);
    m_emptyText = empty->findChild<QLabel *>(u"emptyList"_s);
    m_lists->addWidget(empty);
    return m_lists;
}

NotebookList *WordListView::makeList(Tab tab)
{
    const bool isCatalogue = tab == Tab::grammar || tab == Tab::affixes;
    const double height = tab == Tab::notes ? 52 : isCatalogue ? 32 : 36;
    auto *rows =
        new NotebookList(m_theme, nameOf(tab), label(tab), {.rowHeight = height, .hasHeadings = isCatalogue});
    connect(rows, &NotebookList::chosen, this, &WordListView::choose);
    connect(rows, &NotebookList::deleteRequested, this, &WordListView::remove);
    connect(rows->verticalScrollBar(), &QScrollBar::valueChanged, this, &WordListView::closeUndoLine);
    return rows;
}

QWidget *WordListView::makeDetailArea()
{
    QFrame *area = makeArea(u"detail"_s);
    m_detail = new DetailPane(m_theme);
    bareLayout<QVBoxLayout>(area, 0)->addWidget(m_detail);
    return area;
}

NotebookList &WordListView::list() const
{
    return *m_listOf.at(static_cast<std::size_t>(m_state.tab()));
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
    const QString placeholder = searchPlaceholder(m_state.tab());
    m_searchField->setVisible(!placeholder.isEmpty());
    m_searchField->setPlaceholderText(placeholder);
    m_headerRow->setVisible(m_state.tab() == Tab::words);
    m_header->setText(m_state.header());
    m_stageButton->setText(nameOf(m_state.stageFilter()));
    m_stageButton->setAccessibleName(nameOf(m_state.stageFilter()));
    refreshList();
    refreshDetail();
    refreshUndoLine();
}

void WordListView::refreshList()
{
    const QList<ListRow> rows = m_state.rows();
    list().setRows(rows, m_state.chosen());
    m_emptyText->setText(m_state.emptyText());
    m_lists->setCurrentIndex(
        static_cast<int>(rows.isEmpty() ? tabs.size() : static_cast<std::size_t>(m_state.tab())));
}

/// Leaves the pane alone, with what is selected in it, when it would come out the same.
void WordListView::refreshDetail()
{
    m_detailSoon.stop();
    DetailFacts facts = m_state.detail();
    if (m_shown == facts && m_shownTab == m_state.tab())
        return;
    const bool isSame = m_shown && m_shown->index() == facts.index() && m_shownTab == m_state.tab();
    m_shownTab = m_state.tab();
    m_shown = std::move(facts);
    if (std::holds_alternative<std::monostate>(*m_shown))
        m_detail->showEmpty(
            [this](QWidget *) {
                return makeEmptyText(m_theme, u"nothingChosen"_s, nothingChosenText(m_shownTab));
            },
            list());
    else
        m_detail->showDetail([this](QWidget *parent) { return makeDetail(*m_shown, parent); },
            isSame ? m_detail->scrollOffset() : 0, list());
}

QWidget *WordListView::makeDetail(const DetailFacts &facts, QWidget *parent)
{
    if (const auto *grammar = std::get_if<GrammarFacts>(&facts))
        return new GrammarDetail(m_parts, *grammar);
    if (const auto *affix = std::get_if<AffixFacts>(&facts))
        return new AffixDetail(m_parts, *affix);
    if (const auto *note = std::get_if<AINote>(&facts))
        return new NoteView(m_parts, *note, true, [this, id = note->id] { remove(id); });
    auto *word = new WordDetail(m_parts, std::get<WordFacts>(facts), parent);
    connect(word, &WordDetail::wordChosen, this, &WordListView::goToWord);
    return word;
}

void WordListView::choose(const RowKey &key)
{
    m_state.choose(key);
    showAnotherDetail();
}

void WordListView::showAnotherDetail()
{
    m_shown.reset(); // another one begins at its top
    m_detailSoon.start();
}

void WordListView::goToWord(const QUuid &id)
{
    choose(id);
    refreshList();
    list().reveal(id);
}

void WordListView::remove(const RowKey &key)
{
    const RowKey chosen = m_state.chosen();
    m_state.remove(key);
    if (m_state.chosen() != chosen)
        showAnotherDetail();
    refreshList();
    if (!list().isVisible())
        m_undoLine->button().setFocus();
    m_side->layout()->activate();
    if (m_state.chosen() != chosen && !list().shows(m_state.chosen()))
        list().reveal(m_state.chosen()); // not behind the line, so that the keyboard can go on
}

void WordListView::undoDeletion()
{
    const RowKey row = m_state.undo();
    if (row == RowKey())
        return;
    m_tabs->choose(static_cast<int>(m_state.tab()));
    if (m_state.chosen() == row)
        m_shown.reset();
    refresh();
    list().reveal(row);
}

void WordListView::refreshUndoLine()
{
    const bool hadFocus = m_undoLine->button().hasFocus();
    m_undoLine->setText(m_state.deletions().text());
    if (m_undoLine->isOffering())
        m_undoLine->show();
    closeUndoLine();
    if (hadFocus && !m_undoLine->isOffering())
        list().setFocus();
}

/// What was offered is over; its place is kept as long as a row could move.
void WordListView::closeUndoLine()
{
    if (!m_undoLine->isOffering() && list().keepsRowsWhenGrownBy(m_undoLine->height()))
        m_undoLine->hide();
}

void WordListView::focusSearch()
{
    m_searchField->setFocus(Qt::ShortcutFocusReason);
    m_searchField->selectAll();
}

} // namespace nimbrelle
