#include "support/Notebook.h"

#include "frame/RecordFile.h"

namespace nimbrelle {

QList<WordEntry> Notebook::entriesOnDisk() const
{
    return readRecordFile<QList<WordEntry>>(paths.words).value_or(QList<WordEntry>());
}

QStringList Notebook::events() const
{
    QStringList result;
    for (const QString &line : log.readLines()) {
        const auto event = decode<LearningLog::Event>(line.toUtf8()).value();
        result.append((event.kind + u' ' + event.word + u' ' + event.detail.value_or(QString())).trimmed());
    }
    return result;
}

void Notebook::seed(const AppPaths &paths, const QList<WordEntry> &words)
{
    writeRecordFile(paths.words, words);
}

} // namespace nimbrelle
