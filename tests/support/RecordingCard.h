#pragma once

#include "card/Card.h"

#include <QStringList>

namespace nimbrelle {

/// A card that only notes what was asked of it, each as a line of text, and is visible from a call to hide().
class RecordingCard final : public Card {
public:
    const CardState &state() const override { return m_state; }
    bool isVisible() const override { return !std::holds_alternative<CardHidden>(m_state); }
    QRectF frame() const override { return place; }

    void lookup(const QString &selection, const std::optional<QString> &context, QPointF at) override
    {
        note(QStringLiteral("lookup ") + selection + QStringLiteral(" | ")
                + context.value_or(QStringLiteral("-")),
            at);
        m_state = CardLoading{selection};
    }
    void offerTranslation(const QString &text, QPointF at) override
    {
        note(QStringLiteral("offer ") + text, at);
        m_state = TranslateOffer{text};
    }
    void showTranslation(const QString &text, QPointF at) override
    {
        note(QStringLiteral("translate ") + text, at);
        m_state = Translating{text};
    }
    void showError(const CardError &error, QPointF at) override
    {
        note(QStringLiteral("error ") + error.message
                + (error.needsSettings ? QStringLiteral(" + settings") : QString()),
            at);
        m_state = error;
    }
    void hide() override { m_state = CardHidden{}; }

    QRectF place; ///< where it stands while it is visible
    QStringList calls; ///< oldest first
    QPointF anchor; ///< of the last call

private:
    void note(const QString &call, QPointF where)
    {
        calls.append(call);
        anchor = where;
    }

    CardState m_state;
};

} // namespace nimbrelle
