#include "export/ExportFile.h"

#include "export/AnkiNotes.h"
#include "export/Backup.h"
#include "export/ChosenFile.h"
#include "export/CsvWords.h"
#include "frame/DayKey.h"
#include "frame/Failure.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QByteArray bytesOf(ExportKind kind, const ExportSource &source)
{
    if (kind == ExportKind::csv)
        return CsvWords::table(source.words, source.config, source.now);
    const auto variant =
        kind == ExportKind::ankiCloze ? AnkiNotes::Variant::cloze : AnkiNotes::Variant::cards;
    return AnkiNotes::text(source.words, variant, source.config, source.now);
}

} // namespace

QString exportTo(const QString &file, ExportKind kind, const ExportSource &source, FileCalls &calls)
{
    if (file.isEmpty())
        throw Failure(u"没有给文件名"_s);
    refuseDataFolder(file, source.paths);
    if (kind == ExportKind::backup)
        return Backup::write(source.paths, file, source.now, calls);
    const WriteResult result = replaceFile(file, bytesOf(kind, source), FileMode::ordinary, calls);
    if (!result)
        throw Failure(u"写不进 "_s + file + u"："_s + result.reason());
    return u"已导出 %1 个词"_s.arg(source.words.size());
}

QString exportName(ExportKind kind, Timestamp now)
{
    const QString day = DayKey::string(now);
    switch (kind) {
    case ExportKind::csv:
        return u"nimbrelle-"_s + day + u".csv"_s;
    case ExportKind::anki:
        return u"nimbrelle-anki-"_s + day + u".txt"_s;
    case ExportKind::ankiCloze:
        return u"nimbrelle-anki-填空-"_s + day + u".txt"_s;
    case ExportKind::backup:
        break;
    }
    return u"nimbrelle-"_s + day + u".zip"_s;
}

} // namespace nimbrelle
