#pragma once

#include "card/Card.h"

#include <QStringList>

namespace nimbrelle {

/// A card that only records what was asked of it, each as a line of text. It is visible from such a call to
/// hide().
class RecordingCard final : public Card {
public:
    const CardState &state() const override { return m_state; }
    bool isVisible() const override { return !std::holds_alternative<CardHidden>(m_state); }
    QRectF frame() const override { return place; }

    void lookup(const QString &selection, const std::optional<QString> &context, QPointF at) override
    {
        record(QStringLiteral("lookup %1 | %2").arg(selection, context.value_or(QStringLiteral("-"))), at,
            CardLoading{.selection = selection});
    }
    void offerTranslation(const QString &text, QPointF at) override
    {
        record(QStringLiteral("offer ") + text, at, TranslateOffer{.text = text});
    }
    void showTranslation(const QString &text, QPointF at) override
    {
        record(QStringLiteral("translate ") + text, at, Translating{.text = text});
    }
    void showError(const CardError &error, QPointF at) override
    {
        const QString settings = error.needsSettings ? QStringLiteral(" + settings") : QString();
        record(QStringLiteral("error ") + error.message + settings, at, error);
    }
    void hide() override { m_state = CardHidden{}; }

    QRectF place; ///< its frame
    QStringList calls; ///< oldest first
    QPointF anchor; ///< of the last call

private:
    void record(const QString &call, QPointF at, const CardState &state)
    {
        calls.append(call);
        anchor = at;
        m_state = state;
    }

    CardState m_state;
};

} // namespace nimbrelle
