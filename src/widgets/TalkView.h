#pragma once

#include "widgets/TalkDock.h"
#include "widgets/TalkList.h"

class QVBoxLayout;

namespace nimbrelle {

/// The window of a conversation: a header of its own, the messages and the dock. A derived view calls
/// rebuild() when it is constructed; later a change of the theme does.
class TalkView : public QWidget {
    Q_OBJECT

public:
    struct Look {
        TalkList::Look list;
        TalkDock::Look dock;
    };

    TalkView(const Theme &theme, const Look &look, QWidget *parent);

signals:
    void inputEdited(const QString &text);
    void sendPressed();
    void stopPressed();

protected:
    /// Makes all widgets anew; the focus stays where it is as far as that is possible.
    virtual void rebuild();
    /// New with each rebuild().
    TalkList &list() const { return *m_list; }
    TalkDock &dock() const { return *m_dock; }

    /// @name Called by rebuild(), in this order.
    /// @{
    /// Makes what is shown above the messages.
    virtual void addHeader(QVBoxLayout &rows) = 0;
    /// Makes the chips of the dock.
    virtual void addChips() = 0;
    /// Shows the conversation as it is.
    virtual void refresh() = 0;
    /// @}

    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;

    const Theme &m_theme;

private:
    const Look m_look;
    QWidget *m_page = nullptr;
    TalkList *m_list = nullptr;
    TalkDock *m_dock = nullptr;
};

} // namespace nimbrelle
