#include "settings/SettingsText.h"

#include "ai/ChatAddress.h"
#include "frame/Text.h"

#include <algorithm>

namespace nimbrelle::SettingsText {

using namespace Qt::StringLiterals;

namespace {

QString orUnknown(const QString &text)
{
    return text.isEmpty() ? u"?"_s : text;
}

} // namespace

QString keyNote(const QString &configPath, const QString &home)
{
    const bool isAtHome = !home.isEmpty() && configPath.startsWith(home + u'/');
    return u"API key 只保存在这台电脑上："_s + (isAtHome ? u'~' + configPath.mid(home.size()) : configPath);
}

QString addressHint(const QString &baseURL)
{
    const std::optional<QUrl> address = chatAddress(baseURL);
    const bool isWeb = address && (address->scheme() == u"http" || address->scheme() == u"https");
    if (isWeb || trimmedSpace(baseURL).isEmpty())
        return {};
    return u"这个地址不完整，要从 http:// 或 https:// 写起，例如 "_s + AppConfig().baseURL;
}

QString versionLine(const QString &version, const QString &build)
{
    return u"%1（%2）"_s.arg(orUnknown(version), orUnknown(build));
}

QString dwellLabel(double seconds)
{
    return QString::number(seconds, 'f', 1) + u" 秒"_s;
}

QString wordCount(qsizetype words)
{
    return u"已保存 %1 个词"_s.arg(words);
}

QString keptFilesNote(const QStringList &names)
{
    if (names.isEmpty())
        return {};
    constexpr qsizetype named = 3;
    const QString lead = u"有数据文件读不出来，已经原样留在数据文件夹里，不再需要时可以删掉："_s;
    const QString rest = names.size() > named ? u" 等 %1 个"_s.arg(names.size()) : QString();
    return lead + names.last(std::min(named, names.size())).join(u'、') + rest;
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
