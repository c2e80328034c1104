#pragma once

#include "frame/AppConfig.h"

#include <QStringList>

/// What the settings say that depends on the settings or on this machine.
namespace nimbrelle::SettingsText {

/// Where the key is kept; the home folder is written as "~".
QString keyNote(const QString &configPath, const QString &home);

/// What the provider's address lacks; empty when requests can go there, or when it is empty.
QString addressHint(const QString &baseURL);

/// The short version and the build in brackets, "?" for a missing one.
QString versionLine(const QString &version, const QString &build);

/// How long the pointer must rest: "1.0 秒".
QString dwellLabel(double seconds);

QString wordCount(qsizetype words);

/// Of the damaged files that were kept, the oldest first; empty when there are none.
QString keptFilesNote(const QStringList &names);

/// The chosen key is already another program's.
bool isKeyTakenElsewhere(const AppConfig &config);
/// Both features of a held or tapped key listen to the same one.
bool isKeyUsedTwice(const AppConfig &config);

} // namespace nimbrelle::SettingsText
