#pragma once

#include "frame/TextRange.h"

#include <QRegularExpression>
#include <QStringList>

#include <optional>

namespace nimbrelle {

/// Finds words in sentences, in any letter case. A word boundary lies between a word character and anything
/// else; letters, numbers, connectors and, unlike in the regular-expression engine's own \b, combining marks
/// are word characters. So a text that ends in a sign, such as C++, is found only where a word character
/// follows it.
namespace WordPattern {

enum class Blanks { asWritten, anySpace };

/// `text` to the letter, between two word boundaries; each of its blanks matches any white space if asked
/// to.
QRegularExpression whole(const QString &text, Blanks blanks = Blanks::asWritten);

/// A word that begins with `stem`.
QRegularExpression beginningWith(const QString &stem);

/// Longest first, so that a short word does not hide a longer one; none twice, none empty.
QStringList longestFirst(QStringList words);

/// The first match that cuts no character in two. Absent too for an expression that could not be built.
std::optional<TextRange> firstMatch(const QRegularExpression &expression, const QString &text);

/// Every place where one of the terms occurs in `text`, letter case and word boundaries aside, term by term.
/// Blanks round a term don't count.
QList<TextRange> allOccurrences(const QString &text, const QStringList &terms);

/// Where the terms stand as whole words, in any letter case, from left to right; of two that overlap, the one
/// that begins first, or else the longer. A sign at an end of a term, as in C++, needs no boundary there.
/// Builds no expressions, for those who look through thousands of sentences.
QList<TextRange> wholeOccurrences(const QString &text, const QStringList &terms);

} // namespace WordPattern

} // namespace nimbrelle
