#pragma once

#include <QStringList>

/// Lists of words that other programs wrote: one word or phrase a line, or a table with commas, semicolons or
/// tabs, whose column of words is the one that its heading names, else the first.
namespace nimbrelle::WordsFile {

struct Words {
    QStringList words; ///< in the file's order, each once in whatever letter case
    qsizetype skipped = 0; ///< what is no word, or too long for one

    bool operator==(const Words &) const = default;
};

/// Throws a Failure for what is no text or too large.
Words parse(QByteArrayView bytes);
/// The same of a file. Throws also when it can't be read or holds no word.
Words read(const QString &file);

/// What to tell when `waiting` of them are to be looked up.
QString addedText(const Words &words, qsizetype waiting);

} // namespace nimbrelle::WordsFile
