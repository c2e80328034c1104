#pragma once

#include "card/AskSession.h"

#include <QHash>
#include <QWidget>

class QPushButton;
class QScrollArea;

namespace nimbrelle {

class ReadText;
class TalkDock;
class TalkList;
class Theme;

/// The Ask window's contents: the text in question on top, the conversation, and a dock to ask more.
class AskView : public QWidget {
    Q_OBJECT

public:
    AskView(const Theme &theme, AskSession &session, QWidget *parent = nullptr);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Footer { none, offer, saved };

    void rebuild();
    void beginAnew();
    QWidget *makeHeader();
    void showOriginal();
    void fitHeader();
    QList<QPushButton *> makeChips();
    void showMessages();
    void showState();
    Footer footerOf(const AskSession::Message &message) const;
    QWidget *makeFooter(Footer footer, const QUuid &id);

    const Theme &m_theme;
    AskSession &m_session;
    QWidget *m_page = nullptr;
    QScrollArea *m_header = nullptr;
    ReadText *m_original = nullptr;
    QPushButton *m_fold = nullptr;
    TalkList *m_list = nullptr;
    TalkDock *m_dock = nullptr;
    QList<QPushButton *> m_chips;
    QHash<QUuid, Footer> m_footers;
    bool m_isExpanded = false;
};

} // namespace nimbrelle
