#include "screen/SelectionReader.h"

#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/Text.h"
#include "platform/FrontApplication.h"
#include "platform/InputMonitor.h"
#include "platform/KeySender.h"
#include "platform/WindowAtPointer.h"

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

/// The program in front may have another mark than the one that was made last.
bool isAbout(const QString &text, const std::optional<MarkedText> &marked)
{
    if (!marked)
        return false;
    const QString part = withoutEmbedded(marked->text).simplified();
    return text.simplified().contains(part);
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

SelectionReader::SelectionReader(Clock &clock, const ConfigStore &config, AccessibilityReader &accessibility,
    PrimarySelection &primary, Clipboard &clipboard, KeySender &keys, const Pointer &pointer,
    const FrontApplication &front, const WindowAtPointer &window)
    : m_clock(clock)
    , m_config(config)
    , m_accessibility(accessibility)
    , m_primary(primary)
    , m_clipboard(clipboard)
    , m_keys(keys)
    , m_pointer(pointer)
    , m_front(front)
    , m_window(window)
    , m_lateCopy(clock, clipboard, keys)
{
}

void SelectionReader::noteMouseDown()
{
    m_lateCopy.noteUserAct();
    m_marking = {};
    m_marking.accessibilityAtMouseDown = m_accessibility.changeCount();
    m_marking.primaryAtMouseDown = m_primary.changeCount();
    m_marking.press = m_window.current();
}

void SelectionReader::noteMouseUp()
{
    m_marking.release = m_window.current();
    m_marking.areaAtRelease = m_window.areaOf(m_marking.press.application);
}

void SelectionReader::noteKeyDown()
{
    if (m_pointer.modifiers() != 0) // a shortcut, which may copy
        m_lateCopy.noteUserAct();
}

void SelectionReader::noteMarked()
{
    m_marking = {};
    m_marking.primaryAtMouseDown = m_primary.changeCount() - 1;
    m_marking.isOfPrimary = true;
}

QCoro::Task<std::optional<SelectionReader::Result>> SelectionReader::read(std::stop_token stop)
{
    Marking marking = m_marking; // the next press may come while we wait
    marking.askedAt = m_clock.now();
    const std::optional<MarkedText> marked = co_await readAccessible();
    if (stop.stop_requested() || (marked && isOld(*marked, marking)))
        co_return std::nullopt; // nor would a copy give anything newer
    const std::optional<QString> primary = co_await readPrimary(marking.primaryAtMouseDown);
    if (stop.stop_requested())
        co_return std::nullopt;
    if (marking.isOfPrimary)
        co_return primary ? std::optional(resultOf(*primary, marked)) : std::nullopt;
    const bool isStale = marked && marked->change > 0 && marked->change <= marking.accessibilityAtMouseDown;
    if (marked && !isStale && isAllOfIt(*marked, primary))
        co_return resultOf(marked->text, marked);
    std::optional<QString> text = primary;
    if (!text)
        text = co_await readByCopy(marking, stop);
    if (!text && marked && !isStale)
        text = unlessBlank(withoutEmbedded(marked->text));
    if (stop.stop_requested() || !text)
        co_return std::nullopt;
    co_return resultOf(*text, marked);
}

QCoro::Task<std::optional<SelectionReader::Result>> SelectionReader::readCurrent(std::stop_token stop)
{
    const std::optional<QString> primary = unlessBlank(co_await m_primary.text());
    if (stop.stop_requested())
        co_return std::nullopt;
    const std::optional<MarkedText> marked = co_await readAccessible();
    if (stop.stop_requested() || (!primary && !marked))
        co_return std::nullopt;
    const QString text = primary ? *primary : withoutEmbedded(marked->text);
    co_return resultOf(text, isAbout(text, marked) ? marked : std::nullopt);
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

bool SelectionReader::isOld(const MarkedText &marked, const Marking &marking) const
{
    return marked.change <= marking.accessibilityAtMouseDown
        && m_primary.changeCount() == marking.primaryAtMouseDown;
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

QCoro::Task<std::optional<QString>> SelectionReader::readPrimary(quint64 atMouseDown)
{
    if (m_primary.changeCount() == atMouseDown)
        co_return std::nullopt;
    std::optional<QString> text = co_await m_primary.text();
    co_return unlessBlank(std::move(text));
}

QCoro::Task<std::optional<QString>> SelectionReader::readByCopy(Marking marking, std::stop_token stop)
{
    const auto waited =
        std::chrono::duration_cast<std::chrono::milliseconds>(m_clock.now() - marking.askedAt);
    while (m_copying)
        co_await qCoro(this, &SelectionReader::copyEnded);
    if (stop.stop_requested() || !mayCopyFrom(marking, waited))
        co_return std::nullopt;
    m_copying = true;
    const std::optional<ClipboardSnapshot> before = co_await m_clipboard.snapshot();
    const std::optional<Application> program = mayCopyFrom(marking, waited);
    std::optional<QString> text;
    if (before && program && !stop.stop_requested())
        text = co_await copyOver(*program, *before);
    m_copying = false;
    emit copyEnded();
    co_return unlessBlank(std::move(text));
}

std::optional<Application> SelectionReader::mayCopyFrom(
    const Marking &marking, std::chrono::milliseconds waited) const
{
    const CopySituation situation{.front = m_front.current(),
        .noCopyBundleIDs = m_config.config().noCopyBundleIDs,
        .press = marking.press,
        .release = marking.release,
        .areaAtRelease = marking.areaAtRelease,
        .held = m_pointer.modifiers(),
        .waited = waited};
    return mayCopy(situation) ? situation.front : std::nullopt;
}

QCoro::Task<std::optional<QString>> SelectionReader::copyOver(Application program, ClipboardSnapshot before)
{
    const int owed = m_lateCopy.take(program);
    const quint64 count = m_clipboard.changeCount();
    if (!m_keys.sendCopy())
        co_return std::nullopt;
    const bool hasCopied = co_await clipboardChangesFrom(count);
    std::optional<QString> text;
    if (hasCopied) {
        text = co_await m_clipboard.string();
        m_clipboard.restore(before);
    }
    const int stillOwed = hasCopied ? owed : owed + 1;
    if (stillOwed > 0)
        m_lateCopy.expect(program, before, stillOwed);
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
