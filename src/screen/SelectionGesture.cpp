#include "screen/SelectionGesture.h"

#include "card/Card.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "screen/GestureGuards.h"
#include "screen/ScreenOCR.h"
#include "screen/SelectionKind.h"
#include "screen/SelectionReader.h"

#include <QLineF>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr double dragDistance = 4;
constexpr auto selectionDelay = 80ms;

} // namespace

void SelectionGesture::mouseDown(QPointF at, int clickCount)
{
    m_mouseDownPoint = at;
    m_isDragging = false;
    if (clickCount == 1)
        m_selection.noteMouseDown();
    if (clickCount == 2)
        expectSelection();
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
    if (!isDragTo(at) && clickCount < 2)
        return;
    textMarked(at);
    m_selection.noteMouseUp(); // while the program gets its moment
}

bool SelectionGesture::isDragTo(QPointF at) const
{
    return m_mouseDownPoint && QLineF(*m_mouseDownPoint, at).length() > dragDistance;
}

bool SelectionGesture::mayAct() const
{
    return m_parts.config.config().autoPopupOnSelect && m_parts.guards.mayAct();
}

void SelectionGesture::expectSelection() const
{
    if (mayAct())
        m_parts.lookupIsLikely();
}

void SelectionGesture::textMarked(QPointF at)
{
    if (mayAct())
        handleSelection(at, m_selectionTask.renew());
}

QCoro::Task<> SelectionGesture::handleSelection(QPointF at, std::stop_token stop)
{
    co_await m_parts.clock.sleep(selectionDelay, stop);
    if (stop.stop_requested())
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
        co_await lookup(kind.text, selection->context, at, stop);
}

QCoro::Task<> SelectionGesture::lookup(
    QString word, std::optional<QString> context, QPointF at, std::stop_token stop)
{
    if (!context)
        context = co_await contextAround(at, stop);
    if (!stop.stop_requested())
        m_parts.card.lookup(word, context, at);
}

QCoro::Task<std::optional<QString>> SelectionGesture::contextAround(QPointF at, std::stop_token stop)
{
    if (!m_parts.ocr.isAllowed())
        co_return std::nullopt;
    try {
        const std::optional<ScreenOCR::Result> seen =
            co_await m_parts.ocr.recognize(at, ScreenOCR::Seek::contextOnly, stop);
        if (seen && !seen->context.isEmpty())
            co_return seen->context;
    } catch (const std::exception &) { // the word alone will do
    }
    co_return std::nullopt;
}

} // namespace nimbrelle
