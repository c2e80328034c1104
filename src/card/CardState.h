#pragma once

#include "ai/Contracts.h"
#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "notebook/Unlock.h"

#include <QObject>

#include <variant>

namespace nimbrelle {

/// Whether the card first asks the user to remember a word that is kept already.
struct RecallState {
    enum class Kind {
        done, ///< answered
        off, ///< no question; the card shows everything
        hidden, ///< the meaning is covered
        revealed, ///< the meaning is shown, and the card asks whether it was remembered
    };

    Kind kind = Kind::off;
    bool remembered = false; ///< of done

    bool operator==(const RecallState &) const = default;
};

/// Waiting for the explanation of the marked word.
struct CardLoading {
    QString selection;

    bool operator==(const CardLoading &) const = default;
};

struct WordCardData {
    QString selection; ///< what the user pointed at
    Explanation explanation;
    PageSource source; ///< where the word was met
    std::optional<qint64> savedLookupCount; ///< absent when the word is not in the notebook
    bool justSaved = false; ///< saved by this very card
    std::optional<Unlock> unlock; ///< what this lookup or save unlocked
    RecallState recall;

    bool operator==(const WordCardData &) const = default;
};

/// The small offer beside a longer selection.
struct TranslateOffer {
    QString text;

    bool operator==(const TranslateOffer &) const = default;
};

struct Translating {
    QString text;

    bool operator==(const Translating &) const = default;
};

struct TranslationData {
    QString original; ///< whole, also where the AI got only its beginning
    Translation translation;

    bool operator==(const TranslationData &) const = default;
};

struct CardError {
    QString message;
    bool needsSettings = false; ///< the card offers a way to the settings

    bool operator==(const CardError &) const = default;
};

struct CardHidden {
    bool operator==(const CardHidden &) const = default;
};

/// The whole content of the card.
using CardState = std::variant<CardHidden, CardLoading, WordCardData, TranslateOffer, Translating,
    TranslationData, CardError>;

/// What the card's views redraw from.
class CardModel : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    const CardState &state() const { return m_state; }
    void setState(CardState state)
    {
        if (m_state == state)
            return;
        m_state = std::move(state);
        emit stateChanged();
    }

signals:
    void stateChanged();

private:
    CardState m_state;
};

} // namespace nimbrelle
