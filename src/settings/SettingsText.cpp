#include "settings/SettingsText.h"

namespace nimbrelle::SettingsText {

namespace {

QString orUnknown(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("?") : text;
}

} // namespace

QString keyNote(const QString &configPath, const QString &home)
{
    const bool isAtHome = !home.isEmpty() && configPath.startsWith(home + u'/');
    return QStringLiteral("API key 只保存在这台电脑上：")
        + (isAtHome ? u'~' + configPath.mid(home.size()) : configPath);
}

QString versionLine(const QString &version, const QString &build)
{
    return QStringLiteral("%1（%2）").arg(orUnknown(version), orUnknown(build));
}

QString dwellLabel(double seconds)
{
    return QString::number(seconds, 'f', 1) + QStringLiteral(" 秒");
}

QString wordCount(qsizetype words)
{
    return QStringLiteral("已保存 %1 个词").arg(words);
}

bool isKeyTakenElsewhere(const AppConfig &config)
{
    return config.optionRegionTranslate && config.regionKey == ModifierKey::option;
}

bool isKeyUsedTwice(const AppConfig &config)
{
    return config.optionHoverOCR && config.optionRegionTranslate && config.hoverKey == config.regionKey;
}

} // namespace nimbrelle::SettingsText
