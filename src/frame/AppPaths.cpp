#include "frame/AppPaths.h"

#include "frame/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QString chosenDirectory()
{
    const QByteArray wanted = qgetenv("NIMBRELLE_DATA_DIR");
    if (!wanted.isEmpty())
        return QFile::decodeName(wanted);
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Nimbrelle"_s;
}

AppPaths prepared()
{
    AppPaths paths(chosenDirectory());
    QDir().mkpath(paths.supportDir);
    removeLeftovers(paths.supportDir);
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
}

const AppPaths &AppPaths::shared()
{
    static const AppPaths paths = prepared();
    return paths;
}

} // namespace nimbrelle
