#pragma once

#include "frame/AppPaths.h"
#include "frame/ConfigStore.h"
#include "frame/Failure.h"
#include "notebook/Explanation.h"
#include "notebook/LearningLog.h"
#include "notebook/PageSource.h"
#include "notebook/WordStore.h"
#include "support/ManualClock.h"

#include <QTemporaryDir>

namespace nimbrelle {

/// A notebook in a directory of its own, with a clock moved by hand.
struct Notebook {
    QTemporaryDir directory;
    AppPaths paths{directory.path()};
    ManualClock clock;
    ConfigStore config{paths, clock};
    LearningLog log{paths, clock};
    WordStore::MnemonicRequest memoryAid; ///< none is to be had unless a test sets it
    WordStore store{paths, clock, config, log, [this](auto... arguments) -> QCoro::Task<QString> {
                        return memoryAid ? memoryAid(arguments...) : throw Failure({});
                    }};

    template <class Edit> void configure(Edit edit)
    {
        AppConfig changed = config.config();
        edit(changed);
        config.setConfig(changed);
    }

    static Explanation explained(const char *headword, const char *sentence = nullptr)
    {
        Explanation explanation;
        explanation.headword = QString::fromUtf8(headword);
        explanation.meaningZh = QStringLiteral("意思");
        if (sentence)
            explanation.sentence = QString::fromUtf8(sentence);
        return explanation;
    }

    static PageSource page(const char *url)
    {
        return {.app = QStringLiteral("Firefox"),
            .url = QString::fromUtf8(url),
            .title = QStringLiteral("A page")};
    }

    /// As if the notebook had held these words, and only these, all along.
    void fill(const QList<WordEntry> &words) { store.applySync({.words = words}); }

    QUuid save(const char *headword) { return store.save(explained(headword), {}).entry.id; }
    const WordEntry &word(const char *headword) const
    {
        const WordEntry *found = store.findHeadword(QString::fromUtf8(headword));
        return found ? *found : throw std::runtime_error(headword);
    }
    QList<WordEntry> entriesOnDisk() const;

    /// "kind word detail" of each event of the log.
    QStringList events() const;

    /// Puts words into the store as a file would.
    static void seed(const AppPaths &paths, const QList<WordEntry> &words);
};

} // namespace nimbrelle
