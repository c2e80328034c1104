#pragma once

#include "frame/DataWriter.h"
#include "frame/Record.h"
#include "frame/Timestamp.h"

#include <QStringList>

#include <optional>

namespace nimbrelle {

class AppPaths;
class Clock;

/// The kind of an event.
enum class LogKind {
    lookup,
    save,
    awaken,
    join,
    leave,
    review,
    graduate,
    leech,
    spell,
    spellAdd,
    spellRemove,
    rest,
    glance,
    recall, ///< never written any more; logs that hold it are read for ever, as reviews
};
template <>
inline constexpr auto caseNames<LogKind> = cases("lookup", "save", "awaken", "join", "leave", "review",
    "graduate", "leech", "spell", "spell-add", "spell-remove", "rest", "glance", "recall");

/// The append-only diary of what the learner did with words, one JSON object a line. No failure interrupts
/// the learning: an event that the disk did not take is tried again with the next one, and by the writer.
class LearningLog {
public:
    struct Event {
        Timestamp time;
        QString kind; ///< the name of a LogKind, or of a kind that only another version knows
        QString word;
        std::optional<QString> detail;

        bool operator==(const Event &) const = default;
    };

    LearningLog(const AppPaths &paths, const Clock &clock, DataWriter &writer = DataWriter::shared());
    ~LearningLog() { m_writer.forget(this); }
    Q_DISABLE_COPY_MOVE(LearningLog)
    static LearningLog &shared();

    /// Appends one event of this moment, on a line of its own and with a single write.
    void add(LogKind kind, const QString &word, const std::optional<QString> &detail = std::nullopt);

    /// The raw lines in file order, also those that are no event. Empty lines and lines that are not UTF-8
    /// are left out.
    QStringList readLines() const;

    /// The events among them, in file order.
    QList<Event> events() const;

    /// Differs after every change of the file. Found without reading it.
    struct Stamp {
        qint64 size = 0;
        qint64 modified = 0; ///< milliseconds since 1970

        bool operator==(const Stamp &) const = default;
    };
    Stamp stamp() const;

    /// Used only when a merge result is applied. Lines that are not UTF-8, and so are in no merge, are kept
    /// byte for byte behind the others; a log that can't be read stays as it is.
    void replaceAll(const QStringList &lines);

private:
    WriteResult appendUnwritten();
    void writeUnwritten();

    const QString m_path;
    const Clock &m_clock;
    DataWriter &m_writer;
    QList<QByteArray> m_unwritten; ///< events that the disk did not take, the oldest first
};
template <Is<LearningLog::Event> Record>
inline constexpr auto fieldsOf<Record> = fields(field("time", &Record::time), field("kind", &Record::kind),
    field("word", &Record::word), field("detail", &Record::detail));

} // namespace nimbrelle
