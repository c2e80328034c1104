#pragma once

#include "frame/Clock.h"
#include "platform/AccessibilityReader.h"
#include "platform/Clipboard.h"
#include "platform/FrontApplication.h"

#include <vector>

namespace nimbrelle {

/// One chain of elements, the focused one first, each the child of the next. The selection is the focused
/// one's. Each answer takes `delay` of the test's clock and tells what was there when it was asked for.
class FakeAccessibilityReader final : public AccessibilityReader {
public:
    struct Element {
        bool isWebArea = false;
        std::optional<QString> address;
    };

    explicit FakeAccessibilityReader(Clock &clock) : m_clock(clock) { }

    void beginGesture() override { ++gestures; }
    quint64 changeCount() const override { return changes; }
    QCoro::Task<std::optional<AccessibleElement>> focusedElement() override { return answer(elementAt(0)); }
    QCoro::Task<std::optional<MarkedText>> markedText(AccessibleElement, qsizetype) override
    {
        std::optional<MarkedText> marked;
        if (selection)
            marked =
                MarkedText{.text = *selection, .piece = piece, .change = isOldMark ? changes : changes + 1};
        return answer(marked);
    }
    QCoro::Task<std::optional<bool>> isWebArea(AccessibleElement element) override
    {
        return answer(std::optional(chain.at(indexOf(element)).isWebArea));
    }
    QCoro::Task<std::optional<AccessibleElement>> parent(AccessibleElement element) override
    {
        return answer(elementAt(indexOf(element) + 1));
    }
    QCoro::Task<std::optional<QString>> address(AccessibleElement element) override
    {
        return answer(chain.at(indexOf(element)).address);
    }

    std::chrono::milliseconds delay{0};
    std::vector<Element> chain;
    std::optional<QString> selection;
    std::optional<TextPiece> piece;
    quint64 changes = 0;
    bool isOldMark = false; ///< from before the last press
    int gestures = 0;

private:
    std::optional<AccessibleElement> elementAt(std::size_t index) const
    {
        if (index >= chain.size())
            return std::nullopt;
        return AccessibleElement{.program = {}, .object = QString::number(index)};
    }
    static std::size_t indexOf(const AccessibleElement &element) { return element.object.toULong(); }
    template <class T> QCoro::Task<std::optional<T>> answer(std::optional<T> told)
    {
        if (delay.count() > 0)
            co_await m_clock.sleep(delay, std::stop_token());
        co_return told;
    }

    Clock &m_clock;
};

class FakeClipboard final : public Clipboard {
public:
    QCoro::Task<std::optional<ClipboardSnapshot>> snapshot() override
    {
        co_return answers ? std::optional(content) : std::nullopt;
    }
    quint64 changeCount() const override { return m_changes; }
    QCoro::Task<std::optional<QString>> string() override
    {
        if (content.isEmpty() || !content.constFirst().contains(textFormat))
            co_return std::nullopt;
        co_return QString::fromUtf8(content.constFirst().value(textFormat));
    }
    bool isWrittenBy(const Application &application) const override { return m_writer == application.window; }
    bool isOwn() const override { return m_writer == 0; }
    WriteTimes writeTimes() const override { return times; }
    void restore(const ClipboardSnapshot &snapshot) override
    {
        ++restores;
        write(snapshot, 0);
    }

    /// A program copies.
    void write(const ClipboardSnapshot &snapshot, quint64 writer = 1)
    {
        content = snapshot;
        m_writer = writer;
        ++m_changes;
        emit changed();
    }
    void writeText(const QString &text) { write({{{textFormat, text.toUtf8()}}}); }

    ClipboardSnapshot content;
    bool answers = true;
    int restores = 0;
    WriteTimes times;

private:
    const QString textFormat = QStringLiteral("text/plain;charset=utf-8");

    quint64 m_changes = 0;
    quint64 m_writer = 0;
};

class FakePrimarySelection final : public PrimarySelection {
public:
    quint64 changeCount() const override { return m_changes; }
    QCoro::Task<std::optional<QString>> text() override
    {
        ++reads;
        co_return std::as_const(m_text); // else it would be moved out
    }

    /// A program claims the selection; without a text it does not give it out.
    void claim(std::optional<QString> text)
    {
        m_text = std::move(text);
        ++m_changes;
    }

    int reads = 0;

private:
    std::optional<QString> m_text;
    quint64 m_changes = 0;
};

} // namespace nimbrelle
