#pragma once

#include "card/CardState.h"

#include <QPointF>
#include <QRectF>

namespace nimbrelle {

/// The card as the gestures see it. Points and frames are global, origin at the bottom left of the main
/// screen, y upward.
class Card {
public:
    virtual ~Card() = default;

    virtual const CardState &state() const = 0;
    virtual bool isVisible() const = 0;
    virtual QRectF frame() const = 0;

    /// Explains a word met in `context`, the text round it.
    virtual void lookup(const QString &selection, const std::optional<QString> &context, QPointF at) = 0;
    /// Offers a translation for some seconds.
    virtual void offerTranslation(const QString &text, QPointF at) = 0;
    /// Translates without asking first.
    virtual void showTranslation(const QString &text, QPointF at) = 0;
    /// Ends what the card was about and shows a failure in its place.
    virtual void showError(const CardError &error, QPointF at) = 0;
    virtual void hide() = 0;
};

} // namespace nimbrelle
