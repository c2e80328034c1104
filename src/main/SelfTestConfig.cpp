#include "frame/AppPaths.h"
#include "frame/ConfigStore.h"
#include "frame/RecordFile.h"
#include "frame/Saturate.h"
#include "main/SelfTest.h"

#include <QLocale>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace nimbrelle::SelfTest {

namespace {

struct ConfigSample {
    QString label;
    QByteArray json;
};

const QString sampleKey = u"sk-XXXX"_s;

QString boolText(bool value)
{
    return value ? u"true"_s : u"false"_s;
}

// 1.0 and 1.5: the shortest text that reads back as the same number, never without its fraction.
QString fractionText(double value)
{
    const QString text = QString::number(value, 'g', QLocale::FloatingPointShortest);
    return text.contains(u'.') || text.contains(u'e') ? text : text + u".0"_s;
}

QString describe(const ConfigSample &sample)
{
    const auto config = decode<AppConfig>(sample.json);
    if (!config)
        return sample.label + u"：读取失败"_s;
    return u"%1：key 保留=%2 停住查词=%3 %4 秒 按住=%5(%6) 连按=%7"_s.arg(sample.label,
        boolText(config->apiKey == sampleKey), boolText(config->dwellLookup),
        fractionText(config->dwellSeconds), label(config->hoverKey), boolText(config->optionHoverOCR),
        label(config->regionKey));
}

} // namespace

void runConfig(QTextStream &out)
{
    const ConfigSample samples[]{
        {u"旧版设置文件"_s, R"({"apiKey": "sk-XXXX", "optionHoverOCR": false})"},
        {u"键名写坏了"_s,
            R"({"apiKey": "sk-XXXX", "hoverKey": "fn", "regionKey": "control", "dwellSeconds": 1.5})"},
    };
    for (const ConfigSample &sample : samples)
        out << describe(sample) << Qt::endl;
}

bool runStudyStamp(ConfigStore &config, const AppPaths &paths, QTextStream &out)
{
    const auto stamp = [&config] { return config.config().studySettingsAt; };
    const auto change = [&config](auto edit) {
        AppConfig changed = config.config();
        edit(changed);
        config.setConfig(changed);
    };

    const QString before = stamp();
    change([](AppConfig &changed) { changed.learningSlots = saturatingAdd(changed.learningSlots, 10); });
    const QString afterSlots = stamp();
    change([](AppConfig &changed) { changed.dwellSeconds += 0.1; });
    const QString afterDwell = stamp();
    change([](AppConfig &changed) { changed.sessionSize = saturatingAdd(changed.sessionSize, 1); });
    const auto first = timestampFromIso(afterSlots), last = timestampFromIso(stamp());
    const auto stored = readRecordFile<AppConfig>(paths.config);

    const bool isStamped = afterSlots != before && first;
    const bool isKept = afterDwell == afterSlots;
    const bool isLater = first && last && *last > *first;
    const bool isStored = stored && !stamp().isEmpty() && stored->studySettingsAt == stamp();
    out << u"改名额：%1；改停住秒数：%2；马上再改每轮题数：%3；写进文件：%4"_s.arg(
        isStamped ? u"记下了时间"_s : u"没记时间"_s, isKept ? u"时间不变"_s : u"时间变了"_s,
        isLater ? u"时间更晚"_s : u"时间没变晚"_s, isStored ? u"是"_s : u"否"_s)
        << Qt::endl;
    const bool isRight = isStamped && isKept && isLater && isStored;
    out << (isRight ? u"OK 复习设置会记下修改时间"_s : u"FAIL 复习设置的修改时间不对"_s) << Qt::endl;
    return isRight;
}

} // namespace nimbrelle::SelfTest
