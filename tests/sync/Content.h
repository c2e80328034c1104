#pragma once

#include "notebook/SyncBundle.h"

#include <QSet>

namespace nimbrelle {

/// Everything in a notebook that a learner would miss, by what it says and not by its id: a line each. What
/// belongs to a word is a kind, the word in lower case, and the rest, parted by line breaks.
QSet<QString> contentOf(const SyncBundle &bundle, const QSet<QUuid> &exceptDead = {});

/// The content that stands for the word to which `content` belongs; empty when it belongs to none.
QString wordOf(const QString &content);

} // namespace nimbrelle
