#pragma once

#include "wordbook/WordFacts.h"
#include "wordbook/WordList.h"
#include "wordbook/views/NotebookParts.h"

#include <QTimer>
#include <QWidget>

#include <array>

class QLabel;
class QLineEdit;
class QScrollArea;
class QStackedWidget;

namespace nimbrelle {

class NotebookList;
class Segments;

/// The content of the notebook's window: lists of words, grammar points, affixes and notes on one side, the
/// chosen one on the other.
class WordListView : public QWidget {
    Q_OBJECT

public:
    using Tab = WordListTab;

    explicit WordListView(const NotebookParts &parts);

    QSize sizeHint() const override;

signals:
    void addWordRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    using DetailFacts = std::variant<std::monostate, WordFacts, GrammarFacts, AffixFacts, AINote>;

    void build();
    QWidget *makeSide();
    QWidget *makeTabRow();
    void addSearch();
    QWidget *makeHeaderRow();
    QWidget *makeLists();
    NotebookList *makeList(Tab tab);
    QWidget *makeDetailPane();
    void showStageMenu();

    void refreshSoon();
    void refresh();
    void refreshList();
    QList<ListRow> rowsOf(Tab tab) const;
    bool isFiltered() const;
    void refreshDetail();
    void showDetail(QWidget *pane, int stand);
    void setDetailMargins();
    DetailFacts factsOfChosen() const;
    QWidget *makeDetail(const DetailFacts &facts);

    void setTab(Tab tab);
    void setSearch(const QString &search);
    void setStageFilter(std::optional<DisplayStage> stage);
    RowKey chosen() const;
    void choose(const RowKey &key);
    void goToWord(const QUuid &id);
    void remove(const RowKey &key);
    void focusSearch();
    NotebookList &list(Tab tab) const;

    const NotebookParts m_parts;
    const Theme &m_theme;

    QString m_search;
    Tab m_tab = Tab::words;
    std::optional<QUuid> m_selection;
    std::optional<QUuid> m_noteSelection;
    std::optional<GrammarPoint> m_grammarSelection;
    std::optional<Affix> m_affixSelection;
    std::optional<DisplayStage> m_stageFilter;

    QWidget *m_content = nullptr;
    QWidget *m_side = nullptr;
    Segments *m_tabs = nullptr;
    QLineEdit *m_searchField = nullptr;
    QWidget *m_headerRow = nullptr;
    QLabel *m_header = nullptr;
    QPushButton *m_stageButton = nullptr;
    QStackedWidget *m_lists = nullptr; // in the order of the tabs, and last what stands for an empty list
    std::array<NotebookList *, 4> m_listOf{};
    QLabel *m_emptyText = nullptr;
    QScrollArea *m_detail = nullptr;
    DetailFacts m_shown; // what the detail pane was made from, and
    Tab m_shownTab = Tab::words; // for which tab
    bool m_isRefreshDue = false;
    QTimer m_detailSoon; // when no more input waits, so that a key that is held runs freely
};

} // namespace nimbrelle
