#include "export/LocalBackups.h"

#include "export/Backup.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/Failure.h"
#include "frame/LocalDateTime.h"
#include "platform/Background.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostDays = 7;
const QString syncWord = u"sync"_s;
const QString importWord = u"import"_s;

QList<KeptBackup> keptIn(const QString &folder)
{
    QList<KeptBackup> all;
    for (const QString &name : QDir(folder).entryList(QDir::Files)) {
        if (const auto backup = KeptBackup::fromName(name))
            all.append(*backup);
    }
    std::ranges::stable_sort(all, std::greater(), &KeptBackup::madeAt);
    return all;
}

WriteResult makeFolder(const QString &path)
{
    if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) != 0 && errno != EEXIST)
        return WriteResult::ofErrno();
    restrictToOwner(path);
    return {};
}

void removeSuperfluous(const QString &folder, const KeptBackup &made, const QString &source, FileCalls &calls)
{
    for (const QString &name : LocalBackups::superfluous(keptIn(folder), made)) {
        const QString file = folder + u'/' + name;
        if (QFileInfo(file) != QFileInfo(source))
            calls.remove(QFile::encodeName(file).constData());
    }
}

/// What a backup is made of, away from the main thread.
struct Order {
    AppPaths paths;
    BackupOccasion occasion;
    QString source;
    Timestamp now;
    FileCalls &calls;
};

/// A notebook without any file needs no backup.
WriteResult fulfil(const Order &order)
{
    const Backup::Draft draft = Backup::draftOf(order.paths, order.now);
    if (!draft.hasNotebook)
        return {};
    const QString &folder = order.paths.backups;
    const QString name = KeptBackup::nameFor(localDateTime(order.now), order.occasion, draft.words);
    if (QFileInfo::exists(folder + u'/' + name))
        return {}; // of the same second: what it holds is not to be lost to what came right behind it
    WriteResult result = makeFolder(folder);
    if (result)
        result = Backup::put(draft, folder + u'/' + name, order.calls);
    if (result)
        removeSuperfluous(folder, KeptBackup::fromName(name).value(), order.source, order.calls);
    return result;
}

/// The days that keep their backups: the latest up to the one of `made`, and only then those of a clock that
/// was ahead.
QSet<QDate> daysToKeep(const QList<KeptBackup> &all, const KeptBackup &made)
{
    const QDate today = made.madeAt.date();
    QList<QDate> days;
    for (const KeptBackup &backup : all) {
        if (!days.contains(backup.madeAt.date()))
            days.append(backup.madeAt.date());
    }
    std::ranges::sort(days, [today](const QDate &one, const QDate &other) {
        return std::pair(one <= today, one) > std::pair(other <= today, other);
    });
    days.resize(std::min(days.size(), mostDays));
    return {days.cbegin(), days.cend()};
}

} // namespace

QString KeptBackup::nameFor(QDateTime madeAt, BackupOccasion occasion, qsizetype words)
{
    return u"nimbrelle-%1-%2-%3.zip"_s.arg(madeAt.toString(fileTimeForm),
        occasion == BackupOccasion::sync ? syncWord : importWord, QString::number(words));
}

std::optional<KeptBackup> KeptBackup::fromName(const QString &name)
{
    static const QRegularExpression form(
        u"^nimbrelle-([0-9]{8}-[0-9]{6})-(sync|import)-([0-9]{1,9})\\.zip$"_s);
    const auto match = form.match(name);
    const QDateTime madeAt = QDateTime::fromString(match.captured(1), fileTimeForm);
    if (!match.hasMatch() || !madeAt.isValid())
        return std::nullopt;
    return KeptBackup{.name = name,
        .madeAt = madeAt,
        .words = match.captured(3).toLongLong(),
        .occasion = match.captured(2) == syncWord ? BackupOccasion::sync : BackupOccasion::import};
}

QString KeptBackup::text(const QDateTime &now) const
{
    return u"%1 · %2 个词 · %3"_s.arg(localTimeText(madeAt, now), QString::number(words),
        occasion == BackupOccasion::sync ? u"同步前"_s : u"导入前"_s);
}

LocalBackups::LocalBackups(
    const AppPaths &paths, const Clock &clock, Background &background, DataWriter &writer)
    : m_paths(paths), m_clock(clock), m_background(background), m_writer(writer)
{
}

QList<KeptBackup> LocalBackups::kept() const
{
    return keptIn(m_paths.backups);
}

QString LocalBackups::fileOf(const KeptBackup &backup) const
{
    return m_paths.backups + u'/' + backup.name;
}

// The first backup of a day shows what the day's imports began with, the last what the newest one met.
QStringList LocalBackups::superfluous(const QList<KeptBackup> &all, const KeptBackup &made)
{
    struct Span {
        QDateTime first, last;
    };
    const auto kindOf = [](const KeptBackup &backup) {
        return std::pair(backup.madeAt.date(), static_cast<int>(backup.occasion));
    };
    QHash<std::pair<QDate, int>, Span> spans;
    for (const KeptBackup &backup : all) { // the newest first
        const auto kind = kindOf(backup);
        if (!spans.contains(kind))
            spans.insert(kind, {.first = backup.madeAt, .last = backup.madeAt});
        spans[kind].first = backup.madeAt;
    }
    const QSet<QDate> days = daysToKeep(all, made);
    QStringList names;
    for (const KeptBackup &backup : all) {
        const Span span = spans.value(kindOf(backup));
        const bool isBetween = backup.madeAt != span.first && backup.madeAt != span.last;
        if (backup != made && (isBetween || !days.contains(backup.madeAt.date())))
            names.append(backup.name);
    }
    return names;
}

QCoro::Task<> LocalBackups::beforeSync()
{
    const QDate today = localDateTime(m_clock.now()).date();
    const auto isOfToday = [today](const KeptBackup &backup) {
        return backup.occasion == BackupOccasion::sync && backup.madeAt.date() == today;
    };
    if (std::ranges::any_of(kept(), isOfToday))
        co_return;
    WriteResult result{.error = EIO};
    try {
        result = co_await keep(BackupOccasion::sync, {});
    } catch (const std::exception &) {
        // no archive could be made
    }
    m_writer.report(m_paths.backups, result);
}

QCoro::Task<> LocalBackups::beforeImport(QString source)
{
    WriteResult result;
    try {
        result = co_await keep(BackupOccasion::import, source);
    } catch (const std::exception &failure) {
        throw Failure(u"没有导入：要先留一份备份，但是"_s + Failure::shownText(failure));
    }
    if (!result)
        throw Failure(
            u"没有导入：要先留一份备份，但是写不进 %1（%2）"_s.arg(m_paths.backups, result.reason()));
    m_writer.report(m_paths.backups, result);
}

QCoro::Task<WriteResult> LocalBackups::keep(BackupOccasion occasion, QString source)
{
    m_writer.retry(); // what is on disk is what is kept
    const Order order{.paths = m_paths,
        .occasion = occasion,
        .source = source,
        .now = m_clock.now(),
        .calls = m_writer.calls()};
    WriteResult result;
    const std::function<void()> work = [&] { result = fulfil(order); };
    co_await m_background.run(work);
    emit changed();
    co_return result;
}

} // namespace nimbrelle
