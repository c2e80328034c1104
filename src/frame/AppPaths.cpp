#include "frame/AppPaths.h"

#include "frame/AtomicFile.h"
#include "frame/DataFolder.h"

#include <QFile>
#include <QStandardPaths>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

AppPaths prepared()
{
    const QByteArray named = qgetenv("NIMBRELLE_DATA_DIR");
    AppPaths paths(named.isEmpty()
            ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Nimbrelle"_s
            : QFile::decodeName(named));
    prepareDataFolder(paths, named.isEmpty() ? FolderChoice::ours : FolderChoice::users);
    removeLeftovers(paths.supportDir);
    removeLeftovers(paths.backups);
    return paths;
}

} // namespace

AppPaths::AppPaths(QString directory) : supportDir(std::move(directory))
{
    const auto file = [this](const char *name) { return supportDir + u'/' + QString::fromLatin1(name); };
    config = file("config.json");
    words = file("words.json");
    notes = file("notes.json");
    grammar = file("grammar.json");
    affixes = file("affixes.json");
    deleted = file("deleted.json");
    reviewStats = file("review-stats.json");
    log = file("learning-log.jsonl");
    coach = file("coach.json");
    syncState = file("sync-state.json");
    syncKnown = file("sync-known.json");
    lookupQueue = file("lookup-queue.json");
    backups = file("backups");
}

QStringList AppPaths::files() const
{
    return {config, words, notes, grammar, affixes, deleted, reviewStats, log, coach, syncState, syncKnown,
        lookupQueue};
}

const AppPaths &AppPaths::shared()
{
    static const AppPaths paths = prepared();
    return paths;
}

} // namespace nimbrelle
