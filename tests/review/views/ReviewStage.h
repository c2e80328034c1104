#pragma once

#include "review/views/ReviewView.h"
#include "support/Notebook.h"
#include "support/ViewStage.h"
#include "support/Words.h"

#include <memory>

namespace nimbrelle {

/// The real review window over a notebook of its own, played by keys and by the names of its buttons.
struct ReviewStage : Notebook {
    explicit ReviewStage(double scale = 1, Theme::Scheme scheme = Theme::Scheme::light) : theme(scale)
    {
        theme.setScheme(scheme);
        theme.applyToApplication();
    }
    ~ReviewStage() { clock.advance(std::chrono::minutes(1)); } // lets what still waits run out

    WordEntry word(const char *headword) const
    {
        WordEntry made = wordNamed(QString::fromUtf8(headword));
        made.createdAt = clock.now();
        made.phonetic = QStringLiteral("/x/");
        made.pos = QStringLiteral("adj.");
        made.meaningZh = QStringLiteral("不情愿的，犹豫的");
        made.definitionEn = QStringLiteral("not wanting to do something");
        Example example = exampleOf(QStringLiteral("I was %1 to go.").arg(made.headword));
        example.sentenceZh = QStringLiteral("我不愿意。");
        made.examples = {example};
        return made;
    }
    WordEntry due(const char *headword, double stability = 3, qint64 lapses = 0) const
    {
        using namespace std::chrono_literals;
        WordEntry made = word(headword);
        made.stage = Stage::learning;
        made.review = ReviewState{stability, 5, clock.now() - 1h, clock.now() - 72h, 3, lapses, 1};
        return made;
    }
    WordEntry practised(const char *headword, SpellMode mode) const
    {
        WordEntry made = word(headword);
        made.spellPractice = true;
        made.spellLevel = static_cast<qint64>(mode);
        return made;
    }

    void open(const QList<WordEntry> &words)
    {
        seed(paths, words);
        view.reset();
        session.reset();
        liveWords = std::make_unique<WordStore>(paths, clock, config, log);
        session = std::make_unique<ReviewSession>(*liveWords, clock, speaker);
        view = std::make_unique<ReviewView>(ReviewParts{.theme = theme,
            .session = *session,
            .words = *liveWords,
            .config = config,
            .speaker = speaker,
            .clock = clock});
        ViewStage::show(*view, theme, {500, 480});
    }
    void openSpelling(const QList<WordEntry> &words)
    {
        open(words);
        session->startSpelling();
        settle();
        focus();
    }
    void focus() { clock.advance(std::chrono::milliseconds(30)); }
    static void settle() { ViewStage::settle(); }

    ViewStage user() const { return ViewStage(*view); }
    bool shows(const char *name) const { return user().shows(name); }
    QString text(const char *name) const { return user().text(name); }
    QRect place(const char *name) const { return user().place(name); }

    FakeSpeaker speaker;
    Theme theme;
    std::unique_ptr<WordStore> liveWords;
    std::unique_ptr<ReviewSession> session;
    std::unique_ptr<ReviewView> view;
};

} // namespace nimbrelle
