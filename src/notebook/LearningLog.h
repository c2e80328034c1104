#pragma once

#include "frame/Record.h"
#include "frame/Timestamp.h"

#include <QStringList>

#include <optional>

namespace nimbrelle {

class AppPaths;
class Clock;

/// The append-only diary of what the learner did with words, one JSON object a line. Every failure is
/// ignored: a lost event is preferred to any interruption of learning.
class LearningLog {
public:
    struct Event {
        Timestamp time;
        QString kind; ///< open: a reader passes over kinds that it doesn't know
        QString word;
        std::optional<QString> detail;

        bool operator==(const Event &) const = default;
    };

    LearningLog(const AppPaths &paths, const Clock &clock);
    static LearningLog &shared();

    /// Appends one event of this moment, with a single write.
    void add(const QString &kind, const QString &word, const std::optional<QString> &detail = std::nullopt);

    /// The raw lines in file order, broken ones included; empty lines are left out.
    QStringList readLines() const;

    /// Another after every change of the file. Tells nothing else, and reads nothing.
    struct Stamp {
        qint64 size = 0;
        qint64 modified = 0; ///< milliseconds since 1970

        bool operator==(const Stamp &) const = default;
    };
    Stamp stamp() const;

    /// Used only when a merge result is applied.
    void replaceAll(const QStringList &lines);

private:
    const QString m_path;
    const Clock &m_clock;
};
template <>
inline constexpr auto fieldsOf<LearningLog::Event> = fields("time", &LearningLog::Event::time, "kind",
    &LearningLog::Event::kind, "word", &LearningLog::Event::word, "detail", &LearningLog::Event::detail);

} // namespace nimbrelle
