#pragma once

#include "card/AskSession.h"
#include "widgets/TalkView.h"

#include <QHash>

class QPushButton;
class QScrollArea;

namespace nimbrelle {

class ReadText;

/// The Ask window's contents: the text in question on top, the conversation, and a dock to ask more.
class AskView : public TalkView {
    Q_OBJECT

public:
    AskView(const Theme &theme, AskSession &session, QWidget *parent = nullptr);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

    void rebuild() override;
    void addHeader(QVBoxLayout &rows) override;
    void addChips() override;
    void refresh() override;

private:
    enum class Footer { none, offer, saved };

    void beginAnew();
    QWidget *makeHeaderText();
    void showOriginal();
    void fitHeader();
    void showFooters();
    Footer footerOf(const Conversation::Message &message) const;
    QWidget *makeFooter(Footer footer, const QUuid &id);

    AskSession &m_session;
    QScrollArea *m_header = nullptr;
    ReadText *m_original = nullptr;
    QPushButton *m_fold = nullptr;
    QHash<QUuid, Footer> m_footers;
    bool m_isExpanded = false;
};

} // namespace nimbrelle
