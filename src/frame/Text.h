#pragma once

#include <QString>
#include <QStringList>

/// Text measured and cut in characters as a reader sees them (Unicode extended grapheme clusters): an emoji
/// of several code points, a flag, a letter with combining marks is one. UTF-16 units appear only where a
/// platform gives offsets in them.
namespace nimbrelle {

qsizetype characterCount(QStringView text);

/// The first `count` characters, or all of `text` when it has no more.
QString firstCharacters(const QString &text, qsizetype count);

/// Each character of `text` as a string of its own, in order.
QStringList characters(const QString &text);

/// Whether `text` can be cut before the UTF-16 unit at `position`, its ends included, leaving every character
/// whole.
bool isBetweenCharacters(const QString &text, qsizetype position);

/// Without the blanks (space separators) and tabs at both ends; line breaks stay.
QString trimmedBlanks(const QString &text);

/// Without the white space and line breaks at both ends.
QString trimmedSpace(const QString &text);

/// Without any of the characters of `unwanted` at both ends.
QString trimmedOf(const QString &text, QStringView unwanted);

/// A space separator or a tab, but no line break.
bool isBlank(QChar c);

/// Without control characters, line ends and the marks that turn the direction of text, with which a foreign
/// text could make a line say what it does not.
QString withoutControls(const QString &text);

/// With "…" in place of the secret and of whatever follows a "Bearer": what a server answers may repeat what
/// it was sent.
QString withoutSecret(const QString &text, const QString &secret);

/// Unpaired surrogates replaced by U+FFFD, so that the text can be written as UTF-8.
QString wellFormed(const QString &text);

} // namespace nimbrelle
