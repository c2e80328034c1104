#include "screen/SelectionReader.h"

#include "frame/Clock.h"
#include "frame/Text.h"
#include "platform/FrontApplication.h"
#include "platform/InputMonitor.h"
#include "platform/KeySender.h"

#include <QCoro/QCoroSignal>

#include <algorithm>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr qsizetype contextReach = 300; // UTF-16 units
constexpr int copySteps = 10;
constexpr auto copyStep = 30ms;
constexpr QChar embeddedObject = QChar::ObjectReplacementCharacter;

bool isBlankText(const QString &text)
{
    return trimmedSpace(text).isEmpty();
}

std::optional<QString> unlessBlank(std::optional<QString> text)
{
    return text && !isBlankText(*text) ? text : std::nullopt;
}

QString withoutEmbedded(QString text)
{
    return text.replace(embeddedObject, u' ');
}

/// Some programs put a placeholder where a link or a picture is, and some tell of one paragraph where several
/// are marked; the primary selection holds the whole of it.
bool isAllOfIt(const MarkedText &marked, const std::optional<QString> &primary)
{
    const bool isMore = primary && primary->size() > marked.text.size() && primary->contains(marked.text);
    return !isMore && !marked.text.contains(embeddedObject);
}

/// The context only if it holds the text: placeholders may hide the very place.
SelectionReader::Result resultOf(const QString &text, const std::optional<MarkedText> &marked)
{
    SelectionReader::Result result{.text = text, .context = std::nullopt};
    std::optional<QString> context;
    if (marked && marked->piece)
        context = SelectionReader::contextOf(*marked->piece);
    if (context && (text == marked->text || context->simplified().contains(text.simplified())))
        result.context = context;
    return result;
}

} // namespace

SelectionReader::SelectionReader(Clock &clock, AccessibilityReader &accessibility, PrimarySelection &primary,
    Clipboard &clipboard, KeySender &keys, const Pointer &pointer, const FrontApplication &front)
    : m_clock(clock)
    , m_accessibility(accessibility)
    , m_primary(primary)
    , m_clipboard(clipboard)
    , m_keys(keys)
    , m_pointer(pointer)
    , m_front(front)
{
}

void SelectionReader::noteMouseDown()
{
    m_atMouseDown = {.accessibility = m_accessibility.changeCount(), .primary = m_primary.changeCount()};
}

QCoro::Task<std::optional<SelectionReader::Result>> SelectionReader::read(std::stop_token stop)
{
    const Counts atMouseDown = m_atMouseDown; // the next press may come while we wait
    const std::optional<MarkedText> marked = co_await readAccessible();
    if (stop.stop_requested() || (marked && isOld(*marked, atMouseDown)))
        co_return std::nullopt; // nor would a copy give anything newer
    const std::optional<QString> primary = co_await readPrimary(atMouseDown);
    if (stop.stop_requested())
        co_return std::nullopt;
    const bool isStale = marked && marked->change > 0 && marked->change <= atMouseDown.accessibility;
    if (marked && !isStale && isAllOfIt(*marked, primary))
        co_return resultOf(marked->text, marked);
    std::optional<QString> text = primary;
    if (!text)
        text = co_await readByCopy(stop);
    if (!text && marked)
        text = unlessBlank(withoutEmbedded(marked->text));
    if (stop.stop_requested() || !text)
        co_return std::nullopt;
    co_return resultOf(*text, marked);
}

QCoro::Task<std::optional<MarkedText>> SelectionReader::readAccessible()
{
    const std::optional<AccessibleElement> element = co_await m_accessibility.focusedElement();
    if (!element)
        co_return std::nullopt;
    std::optional<MarkedText> marked = co_await m_accessibility.markedText(*element, contextReach);
    if (!marked || isBlankText(marked->text))
        co_return std::nullopt;
    co_return marked;
}

bool SelectionReader::isOld(const MarkedText &marked, Counts atMouseDown) const
{
    return marked.change <= atMouseDown.accessibility && m_primary.changeCount() == atMouseDown.primary;
}

std::optional<QString> SelectionReader::contextOf(const TextPiece &piece)
{
    const qsizetype size = piece.text.size();
    const qsizetype location = std::clamp(piece.location, qsizetype{0}, size);
    const qsizetype length = std::clamp(piece.length, qsizetype{0}, size - location);
    qsizetype start = std::max(location - contextReach, qsizetype{0});
    qsizetype end = std::min(location + length + contextReach, size);
    if (start < end && piece.text[start].isLowSurrogate())
        ++start;
    if (start < end && piece.text[end - 1].isHighSurrogate())
        --end;
    if (end <= start)
        return std::nullopt;
    return withoutEmbedded(piece.text.sliced(start, end - start));
}

QCoro::Task<std::optional<QString>> SelectionReader::readPrimary(Counts atMouseDown)
{
    if (m_primary.changeCount() == atMouseDown.primary)
        co_return std::nullopt;
    std::optional<QString> text = co_await m_primary.text();
    co_return unlessBlank(std::move(text));
}

QCoro::Task<std::optional<QString>> SelectionReader::readByCopy(std::stop_token stop)
{
    while (m_copying)
        co_await qCoro(this, &SelectionReader::copyEnded);
    if (stop.stop_requested() || !mayCopy())
        co_return std::nullopt;
    m_copying = true;
    const std::optional<ClipboardSnapshot> before = co_await m_clipboard.snapshot();
    std::optional<QString> text;
    if (before && mayCopy() && !stop.stop_requested())
        text = co_await copyOver(*before);
    m_copying = false;
    emit copyEnded();
    co_return unlessBlank(std::move(text));
}

// In a terminal the shortcut would end the running program, and with a held modifier it is another one.
bool SelectionReader::mayCopy() const
{
    const auto application = m_front.current();
    return application && !application->isTerminal && m_pointer.modifiers() == 0;
}

QCoro::Task<std::optional<QString>> SelectionReader::copyOver(ClipboardSnapshot before)
{
    const quint64 count = m_clipboard.changeCount();
    if (!m_keys.sendCopy())
        co_return std::nullopt;
    const bool hasCopied = co_await clipboardChangesFrom(count);
    if (!hasCopied)
        co_return std::nullopt; // untouched, so there is nothing to restore
    std::optional<QString> text = co_await m_clipboard.string();
    m_clipboard.restore(before);
    co_return text;
}

QCoro::Task<bool> SelectionReader::clipboardChangesFrom(quint64 count)
{
    for (int step = 0; step < copySteps; ++step) {
        co_await m_clock.sleep(copyStep, std::stop_token());
        if (m_clipboard.changeCount() != count)
            co_return true;
    }
    co_return false;
}

} // namespace nimbrelle
