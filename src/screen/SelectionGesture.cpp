#include "screen/SelectionGesture.h"

#include "card/Card.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "platform/InputMonitor.h"
#include "screen/GestureGuards.h"
#include "screen/SelectionKind.h"
#include "screen/SelectionReader.h"

#include <QLineF>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr double dragDistance = 4;
constexpr auto selectionDelay = 80ms;
constexpr auto nextPressWait = 1s; // longer than any double click's
const QString nothingMarked = u"没有读到选中的文字，请先选中一个词或一段英文。"_s;
const QString noEnglish = u"选中的文字里没有英文。"_s;

} // namespace

SelectionGesture::SelectionGesture(const GestureParts &parts, SelectionReader &selection)
    : m_parts(parts)
    , m_selection(selection)
    , m_forgetTask(parts.clock, [this](const std::stop_token &) { m_beforeMark.reset(); })
{
}

void SelectionGesture::mouseDown(QPointF at, int clickCount)
{
    m_mouseDownPoint = at;
    m_isDragging = false;
    m_forgetTask.cancel();
    if (clickCount == 1) {
        m_selection.noteMouseDown();
        keepSnapshot(at);
    } else if (clickCount == 2) {
        expectSelection();
    }
}

// A highlight hides its text from the recognition, so the picture is taken before there is one. It goes soon
// after the release; what reads it has its own until then.
QCoro::Task<> SelectionGesture::keepSnapshot(QPointF at)
{
    m_beforeMark.reset();
    if (!mayAct() || !m_parts.ocr.isAllowed())
        co_return;
    try {
        m_beforeMark = co_await m_parts.ocr.take(at);
    } catch (const std::exception &) { // there will be the one after the mark
    }
}

void SelectionGesture::mouseDragged(QPointF at)
{
    if (!m_isDragging && isDragTo(at)) {
        m_isDragging = true;
        expectSelection();
    }
}

void SelectionGesture::mouseUp(QPointF at, int clickCount)
{
    if (isDragTo(at) || clickCount >= 2) {
        markEnded(at);
        m_selection.noteMouseUp(); // while the program gets its moment
    }
    m_forgetTask.schedule(nextPressWait);
}

bool SelectionGesture::isDragTo(QPointF at) const
{
    return m_mouseDownPoint && QLineF(*m_mouseDownPoint, at).length() > dragDistance;
}

bool SelectionGesture::mayAct() const
{
    return m_parts.config.config().autoPopupOnSelect && m_parts.guards.mayActOnClick();
}

void SelectionGesture::expectSelection() const
{
    if (mayAct())
        m_parts.lookupIsLikely();
}

void SelectionGesture::textMarked(QPointF at)
{
    m_mouseDownPoint.reset();
    m_beforeMark.reset();
    m_selection.noteMarked();
    expectSelection();
    markEnded(at);
}

void SelectionGesture::markEnded(QPointF at)
{
    if (mayAct())
        handleSelection(at, m_beforeMark, m_selectionTask.renew());
    else
        m_beforeMark.reset();
}

QCoro::Task<> SelectionGesture::handleSelection(
    QPointF at, std::optional<ScreenOCR::Snapshot> before, std::stop_token stop)
{
    const QPointF from = m_mouseDownPoint.value_or(at); // the next press may come while we wait
    co_await m_parts.clock.sleep(selectionDelay, stop);
    if (stop.stop_requested() || m_parts.guards.isPointerGrabbed())
        co_return;
    m_parts.accessibility.beginGesture();
    const std::optional<SelectionReader::Result> selection = co_await m_selection.read(stop);
    if (stop.stop_requested() || !selection)
        co_return;
    m_parts.state.dwellCard = false;
    const SelectionKind kind = SelectionKind::classify(selection->text);
    if (kind.kind == SelectionKind::Kind::passage)
        m_parts.card.offerTranslation(kind.text, at);
    else if (kind.kind == SelectionKind::Kind::word)
        co_await lookup({.text = kind.text, .from = from, .to = at}, selection->context, before, stop);
}

void SelectionGesture::lookUpCurrent()
{
    if (!m_parts.guards.mayAct())
        return;
    m_parts.lookupIsLikely();
    handleCurrent(m_selectionTask.renew());
}

QCoro::Task<> SelectionGesture::handleCurrent(std::stop_token stop)
{
    const std::optional<QPointF> pointer = co_await m_parts.pointer.locate();
    const QPointF at = pointer.value_or(m_parts.pointer.location());
    if (stop.stop_requested())
        co_return;
    m_parts.accessibility.beginGesture();
    const std::optional<SelectionReader::Result> selection = co_await m_selection.readCurrent(stop);
    if (stop.stop_requested())
        co_return;
    m_parts.state.dwellCard = false;
    const auto kind = selection ? SelectionKind::classify(selection->text) : SelectionKind();
    if (kind.kind == SelectionKind::Kind::passage)
        m_parts.card.showTranslation(kind.text, at);
    else if (kind.kind == SelectionKind::Kind::word)
        co_await lookup({.text = kind.text, .from = at, .to = at}, selection->context, std::nullopt, stop);
    else
        m_parts.card.showError({.message = selection ? noEnglish : nothingMarked}, at);
}

QCoro::Task<> SelectionGesture::lookup(ScreenOCR::Marked marked, std::optional<QString> context,
    std::optional<ScreenOCR::Snapshot> before, std::stop_token stop)
{
    if (!context)
        context = co_await contextOf(marked, std::move(before), stop);
    if (!stop.stop_requested())
        m_parts.card.lookup(marked.text, context, marked.to);
}

QCoro::Task<std::optional<QString>> SelectionGesture::contextOf(
    ScreenOCR::Marked marked, std::optional<ScreenOCR::Snapshot> before, std::stop_token stop)
{
    if (!m_parts.ocr.isAllowed())
        co_return std::nullopt;
    std::optional<QString> context;
    try {
        context = co_await m_parts.ocr.contextOf(std::move(marked), std::move(before), stop);
    } catch (const std::exception &) { // the word alone will do
    }
    co_return context;
}

} // namespace nimbrelle
