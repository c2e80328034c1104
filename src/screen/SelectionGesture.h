#pragma once

#include "frame/TaskSlot.h"
#include "screen/DebouncedTask.h"
#include "screen/GestureParts.h"
#include "screen/ScreenOCR.h"

#include <QCoro/QCoroTask>
#include <QPointF>
#include <QString>

#include <optional>

namespace nimbrelle {

class SelectionReader;

/// Marking text with the mouse: a word is looked up, and for a longer text a translation is offered. Its
/// failures are silent, but for those of a key. Points are global, y upward.
class SelectionGesture {
public:
    SelectionGesture(const GestureParts &parts, SelectionReader &selection);

    void mouseDown(QPointF at, int clickCount);
    void mouseDragged(QPointF at);
    void mouseUp(QPointF at, int clickCount);

    /// The user has marked text and the pointer is at `at`, as the desktop tells where it does not tell of
    /// presses. The program in front first gets a moment to update its selection.
    void textMarked(QPointF at);
    /// Another gesture, which marks nothing, or not yet.
    void attentionMoved() { m_selectionTask.cancel(); }

    /// Looks up what is marked now, where the pointer is. The user asked, so a passage is translated at once,
    /// and failures are shown.
    void lookUpCurrent();

private:
    void markEnded(QPointF at);
    bool isDragTo(QPointF at) const;
    bool mayAct() const;
    void expectSelection() const;
    QCoro::Task<> keepSnapshot(QPointF at);
    QCoro::Task<> handleSelection(
        QPointF at, std::optional<ScreenOCR::Snapshot> before, std::stop_token stop);
    QCoro::Task<> handleCurrent(std::stop_token stop);
    QCoro::Task<> lookup(ScreenOCR::Marked marked, std::optional<QString> context,
        std::optional<ScreenOCR::Snapshot> before, std::stop_token stop);
    QCoro::Task<std::optional<QString>> contextOf(
        ScreenOCR::Marked marked, std::optional<ScreenOCR::Snapshot> before, std::stop_token stop);

    const GestureParts m_parts;
    SelectionReader &m_selection;
    std::optional<QPointF> m_mouseDownPoint;
    bool m_isDragging = false; // since that press
    std::optional<ScreenOCR::Snapshot> m_beforeMark; // of the first press, until the last click is over
    DebouncedTask m_forgetTask;
    TaskSlot m_selectionTask;
};

} // namespace nimbrelle
