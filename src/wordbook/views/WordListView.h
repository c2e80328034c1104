#pragma once

#include "wordbook/WordListState.h"
#include "wordbook/views/WordbookParts.h"

#include <QTimer>
#include <QWidget>

#include <array>

class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;

namespace nimbrelle {

class DetailPane;
class NotebookList;
class Segments;
class UndoLine;

/// The content of the notebook's window: lists of words, grammar points, affixes and notes on one side, the
/// chosen one on the other.
class WordListView : public QWidget {
    Q_OBJECT

public:
    using Tab = WordListTab;

    explicit WordListView(const WordbookParts &parts);

    QSize sizeHint() const override;

signals:
    void addWordRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void build();
    QWidget *makeSide();
    QWidget *makeTabRow();
    void addSearch();
    QWidget *makeHeaderRow();
    QWidget *makeLists();
    NotebookList *makeList(Tab tab);
    QWidget *makeDetailArea();
    void showStageMenu();

    void refreshSoon();
    void refresh();
    void refreshList();
    void refreshDetail();
    void refreshUndoLine();
    void closeUndoLine();
    QWidget *makeDetail(const DetailFacts &facts, QWidget *parent);

    void choose(const RowKey &key);
    void showAnotherDetail();
    void goToWord(const QUuid &id);
    void remove(const RowKey &key);
    void undoDeletion();
    void focusSearch();
    NotebookList &list() const;

    const WordbookParts m_parts;
    const Theme &m_theme;

    WordListState m_state;

    QWidget *m_content = nullptr;
    QWidget *m_side = nullptr;
    Segments *m_tabs = nullptr;
    QLineEdit *m_searchField = nullptr;
    QWidget *m_headerRow = nullptr;
    QLabel *m_header = nullptr;
    QPushButton *m_stageButton = nullptr;
    QStackedWidget *m_lists = nullptr; // in the order of the tabs, and last the text of an empty list
    std::array<NotebookList *, 4> m_listOf{};
    QLabel *m_emptyText = nullptr;
    UndoLine *m_undoLine = nullptr;
    DetailPane *m_detail = nullptr;
    std::optional<DetailFacts> m_shown; // what the detail pane was made from; null to make it anew
    Tab m_shownTab = Tab::words;
    bool m_isRefreshDue = false;
    QTimer m_detailSoon; // when no more input waits, so that a key that is held runs freely
};

} // namespace nimbrelle
