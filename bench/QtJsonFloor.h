#pragma once

#include "notebook/WordEntry.h"

#include <QByteArray>

/// What the same work costs with Qt's own JSON classes: the yardstick of the record codec, used nowhere else.
namespace nimbrelle::bench {

QList<WordEntry> wordsByQtJson(const QByteArray &json);

} // namespace nimbrelle::bench
