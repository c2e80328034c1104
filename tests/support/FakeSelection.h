#pragma once

#include "platform/AccessibilityReader.h"
#include "platform/Clipboard.h"

#include <functional>
#include <vector>

namespace nimbrelle {

/// One chain of elements, the focused one first, each the child of the next. The selection is the focused
/// one's.
class FakeAccessibilityReader final : public AccessibilityReader {
public:
    struct Element {
        bool isWebArea = false;
        std::optional<QString> address;
    };

    void beginGesture() override
    {
        ++gestures;
        m_late = false;
    }
    std::optional<AccessibleElement> focusedElement() override
    {
        return ask(chain.empty() ? std::nullopt : std::optional{elementAt(0)});
    }
    std::optional<QString> selectedText(const AccessibleElement &) override { return ask(selection); }
    std::optional<TextPiece> textRoundSelection(const AccessibleElement &, qsizetype) override
    {
        return ask(piece);
    }
    std::optional<bool> isWebArea(const AccessibleElement &element) override
    {
        return ask(std::optional{chain.at(place(element)).isWebArea});
    }
    std::optional<AccessibleElement> parent(const AccessibleElement &element) override
    {
        const std::size_t next = place(element) + 1;
        return ask(next < chain.size() ? std::optional{elementAt(next)} : std::nullopt);
    }
    std::optional<QString> address(const AccessibleElement &element) override
    {
        return ask(chain.at(place(element)).address);
    }

    std::vector<Element> chain;
    std::optional<QString> selection;
    std::optional<TextPiece> piece;
    bool hangs = false; ///< the program answers nothing any more
    int gestures = 0;
    int questions = 0; ///< those that reached the program

private:
    template <typename Answer> std::optional<Answer> ask(const std::optional<Answer> &answer)
    {
        if (m_late)
            return std::nullopt;
        ++questions;
        m_late = hangs;
        return hangs ? std::nullopt : answer;
    }
    static AccessibleElement elementAt(std::size_t index)
    {
        return {QStringLiteral("fake"), QString::number(index)};
    }
    static std::size_t place(const AccessibleElement &element) { return element.object.toULong(); }

    bool m_late = false;
};

/// Plain text stands under the format below.
class FakeClipboard final : public Clipboard {
public:
    static QString textFormat() { return QStringLiteral("text/plain;charset=utf-8"); }

    QCoro::Task<std::optional<ClipboardSnapshot>> snapshot() override
    {
        std::optional<ClipboardSnapshot> taken;
        if (answers)
            taken = content;
        co_return taken;
    }
    quint64 changeCount() const override { return m_changes; }
    QCoro::Task<std::optional<QString>> string() override
    {
        std::optional<QString> text;
        if (answers && !content.isEmpty() && content.constFirst().contains(textFormat()))
            text = QString::fromUtf8(content.constFirst().value(textFormat()));
        co_return text;
    }
    void restore(const ClipboardSnapshot &snapshot) override
    {
        ++restores;
        write(snapshot);
    }

    /// Somebody copies.
    void write(const ClipboardSnapshot &snapshot)
    {
        content = snapshot;
        ++m_changes;
    }
    void writeText(const QString &text) { write({{{textFormat(), text.toUtf8()}}}); }

    ClipboardSnapshot content;
    bool answers = true;
    int restores = 0;

private:
    quint64 m_changes = 0;
};

class FakePrimarySelection final : public PrimarySelection {
public:
    quint64 changeCount() const override { return m_changes; }
    QCoro::Task<std::optional<QString>> text() override
    {
        ++reads;
        std::optional<QString> given = m_text;
        co_return given;
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
