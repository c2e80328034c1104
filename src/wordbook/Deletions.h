#pragma once

#include "frame/TaskSlot.h"
#include "notebook/WordEntry.h"
#include "wordbook/WordList.h"

#include <QCoro/QCoroTask>
#include <QObject>

namespace nimbrelle {

class Clock;

/// Deletes what stands in the notebook's lists, and takes it back, the latest first, until ten seconds have
/// passed since the last deletion or return. Main thread only; all handed in must outlive it.
class Deletions : public QObject {
    Q_OBJECT

public:
    /// Of a record, and how it stood in its list.
    struct Place {
        WordListTab tab = WordListTab::words;
        QUuid id;
        bool wasChosen = false;

        bool operator==(const Place &) const = default;
    };

    Deletions(WordStore &words, Clock &clock);

    /// The one of `place`; one that is gone already can't be taken back.
    void remove(const Place &place);

    /// What the next undo() would bring back, as 已删除 run; empty when there is nothing.
    QString text() const;
    /// Where it stands now, under its new id; absent when there was nothing.
    std::optional<Place> undo();

signals:
    void changed(); ///< of the text

private:
    struct Deleted {
        Place place;
        qsizetype position = 0; ///< in the store's list
        std::variant<WordEntry, AINote> record;
    };

    template <class Record>
    static std::optional<Deleted> recordOf(const Place &place, const QList<Record> &records);
    std::optional<Deleted> recordOf(const Place &place) const;
    QUuid restore(const Deleted &deleted);
    void offer();
    QCoro::Task<> withdrawLater(std::stop_token stop);

    WordStore &m_words;
    Clock &m_clock;
    QList<Deleted> m_deleted; ///< the latest last
    TaskSlot m_withdrawal;
};

} // namespace nimbrelle
