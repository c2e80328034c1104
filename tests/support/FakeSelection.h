#pragma once

#include "platform/AccessibilityReader.h"
#include "platform/Clipboard.h"

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

    void beginGesture() override { ++gestures; }
    std::optional<AccessibleElement> focusedElement() override { return elementAt(0); }
    std::optional<QString> selectedText(const AccessibleElement &) override { return selection; }
    std::optional<TextPiece> textRoundSelection(const AccessibleElement &, qsizetype) override
    {
        return piece;
    }
    std::optional<bool> isWebArea(const AccessibleElement &element) override
    {
        return chain.at(indexOf(element)).isWebArea;
    }
    std::optional<AccessibleElement> parent(const AccessibleElement &element) override
    {
        return elementAt(indexOf(element) + 1);
    }
    std::optional<QString> address(const AccessibleElement &element) override
    {
        return chain.at(indexOf(element)).address;
    }

    std::vector<Element> chain;
    std::optional<QString> selection;
    std::optional<TextPiece> piece;
    int gestures = 0;

private:
    std::optional<AccessibleElement> elementAt(std::size_t index) const
    {
        if (index >= chain.size())
            return std::nullopt;
        return AccessibleElement{.program = {}, .object = QString::number(index)};
    }
    static std::size_t indexOf(const AccessibleElement &element) { return element.object.toULong(); }
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
    void restore(const ClipboardSnapshot &snapshot) override
    {
        ++restores;
        write(snapshot);
    }

    /// A program copies.
    void write(const ClipboardSnapshot &snapshot)
    {
        content = snapshot;
        ++m_changes;
    }
    void writeText(const QString &text) { write({{{textFormat, text.toUtf8()}}}); }

    ClipboardSnapshot content;
    bool answers = true;
    int restores = 0;

private:
    const QString textFormat = QStringLiteral("text/plain;charset=utf-8");

    quint64 m_changes = 0;
};

class FakePrimarySelection final : public PrimarySelection {
public:
    quint64 changeCount() const override { return m_changes; }
    QCoro::Task<std::optional<QString>> text() override
    {
        ++reads;
        co_return m_text;
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
