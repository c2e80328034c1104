#pragma once

#include "notebook/SyncBundle.h"

#include <QByteArray>

/// A bundle as a comparison value: two count as equal exactly when their hashes are equal. The hash never
/// leaves the device, so the text needs to be deterministic and no more.
namespace nimbrelle::BundleForm {

/// Canonical text; empty bytes when the bundle can't be written.
QByteArray json(const SyncBundle &bundle);

/// Lower-case hexadecimal SHA-256 of json().
QString hash(const SyncBundle &bundle);
QString hashOfJson(const QByteArray &json);

/// As the bundle comes back from its own text, so without fractions of seconds; unchanged when that fails.
/// Its text, and so its hash, is that of the bundle it came from.
SyncBundle normalized(const SyncBundle &bundle);

} // namespace nimbrelle::BundleForm
