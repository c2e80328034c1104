#pragma once

#include "frame/DamagedFiles.h"
#include "frame/Record.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace nimbrelle {

class AppPaths;
class Clock;

/// One bubble of the conversation.
struct CoachMessage {
    QUuid id;
    bool fromCoach = false;
    QString text; ///< what was said, and what the AI gets to read
    std::optional<QString> shown; ///< what the bubble shows instead: the label of a ready-made question

    bool operator==(const CoachMessage &) const = default;
};
template <Is<CoachMessage> Record>
inline constexpr auto fieldsOf<Record> = fields(field("id", &Record::id),
    field("fromCoach", &Record::fromCoach), field("text", &Record::text), field("shown", &Record::shown));

/// The conversation of one local day.
struct CoachDay {
    QString day; ///< a DayKey
    QList<CoachMessage> messages;

    bool operator==(const CoachDay &) const = default;
};
template <Is<CoachDay> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("day", &Record::day), field("messages", &Record::messages));

/// The coach's conversations of the last days, the oldest first, in a file of this device alone.
class CoachHistory {
public:
    struct Briefing {
        QString day;
        QString text;

        bool operator==(const Briefing &) const = default;
    };

    /// Reads the file; a missing or broken one is an empty history.
    CoachHistory(const AppPaths &paths, const Clock &clock, DataWriter &writer = DataWriter::shared());

    const QList<CoachDay> &days() const { return m_days; }
    /// What the coach said first on the latest day but `today` on which it said anything; absent when that is
    /// empty.
    std::optional<Briefing> briefingBefore(const QString &today) const;

    /// Replaces today's conversation, keeps 29 days in all, and writes the file. A conversation without
    /// messages leaves no day.
    void put(const QString &today, const QList<CoachMessage> &messages);

    /// Of the days of another device those that are none of ours, up to today, and for which
    /// there is room.
    QList<CoachDay> missing(const QList<CoachDay> &days) const;
    /// Puts those in at their places.
    void add(const QList<CoachDay> &days);

private:
    void write();

    const QString m_path;
    const Clock &m_clock;
    DamagedFiles m_damaged;
    QList<CoachDay> m_days;
};

} // namespace nimbrelle
