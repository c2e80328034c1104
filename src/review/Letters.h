#pragma once

#include "frame/Text.h"

#include <QList>
#include <QStringList>

/// Words taken apart into characters, each a string of its own, and compared as a reader compares them.
namespace nimbrelle::Letters {

inline const QString blank(u' ');
inline const QString gap(u'_');

/// In lower case and composed, so that an accented letter equals the plain letter with a combining mark.
QString folded(const QString &text);

/// Letter case aside.
bool isSame(const QString &a, const QString &b);

/// `letters` cut at blanks, without empty pieces. A blank that carries a combining mark is no blank.
QList<QStringList> splitAtBlanks(const QStringList &letters);

} // namespace nimbrelle::Letters
