#pragma once

#include "platform/Speaker.h"
#include "review/ReviewSession.h"
#include "support/Notebook.h"
#include "support/Words.h"

namespace nimbrelle {

struct RecordingSpeaker : Speaker {
    void speak(const QString &text) override { said.append(text); }

    QStringList said;
};

/// A session over a notebook of its own, played by its moves.
struct ReviewRound : Notebook {
    ReviewRound() { session.emplace(store, clock, speaker); }
    ~ReviewRound() { clock.advance(std::chrono::minutes(1)); } // lets what still waits run out

    WordEntry learning(const char *headword) const
    {
        return {.id = QUuid::createUuid(),
            .headword = QString::fromUtf8(headword),
            .createdAt = clock.now(),
            .stage = Stage::learning};
    }
    WordEntry due(const char *headword, qint64 lapses = 0, double stability = 3) const
    {
        using namespace std::chrono_literals;
        WordEntry word = learning(headword);
        word.review = ReviewState{stability, 5, clock.now() - 1h, clock.now() - 72h, 3, lapses, 1};
        return word;
    }
    WordEntry practised(const char *headword, qint64 level = 0) const
    {
        WordEntry word = learning(headword);
        word.stage = std::nullopt;
        word.spellPractice = true;
        word.spellLevel = level;
        return word;
    }

    void judge(Rating rating)
    {
        session->reveal();
        session->rate(rating);
    }
    void type(const QString &text)
    {
        session->setInput(text);
        session->submit();
    }

    RecordingSpeaker speaker;
    std::optional<ReviewSession> session;
};

} // namespace nimbrelle
