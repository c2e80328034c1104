#include "frame/ConfigStore.h"

#include "frame/AppPaths.h"
#include "frame/RecordFile.h"
#include "support/ManualClock.h"
#include "support/Printers.h"

#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class ConfigStoreTest : public testing::Test {
protected:
    template <class Edit> void change(ConfigStore &store, Edit edit)
    {
        AppConfig config = store.config();
        edit(config);
        store.setConfig(config);
    }

    std::optional<AppConfig> onDisk() const { return readRecordFile<AppConfig>(m_paths.config); }

    QTemporaryDir m_directory;
    AppPaths m_paths{m_directory.path()};
    ManualClock m_clock;
};

TEST_F(ConfigStoreTest, WritesNothingBeforeTheFirstChange)
{
    ConfigStore store(m_paths, m_clock);
    EXPECT_EQ(store.config(), AppConfig());
    store.setConfig(store.config());
    EXPECT_FALSE(QFile::exists(m_paths.config));
    change(store, [](AppConfig &config) { config.model = u"m"_s; });
    EXPECT_EQ(onDisk(), store.config());
    constexpr int others = 0x0077; // any right of the group or of others
    EXPECT_EQ(int(QFileInfo(m_paths.config).permissions()) & others, 0);
}

TEST_F(ConfigStoreTest, ClosesAFileThatOthersCanRead)
{
    replaceFile(m_paths.config, "{\"model\": \"m\"}");
    QFile::setPermissions(m_paths.config, QFile::Permissions(0x6644));
    EXPECT_EQ(ConfigStore(m_paths, m_clock).config().model, u"m"_s);
    EXPECT_EQ(int(QFileInfo(m_paths.config).permissions()), 0x6600);
}

TEST_F(ConfigStoreTest, StampsOnlyStudySettingsAndEachLaterThanTheLast)
{
    ConfigStore store(m_paths, m_clock);
    QSignalSpy changed(&store, &ConfigStore::configChanged),
        study(&store, &ConfigStore::studySettingsChanged);
    change(store, [](AppConfig &config) { config.dwellSeconds = 2; });
    EXPECT_EQ(store.config().studySettingsAt, QString());
    EXPECT_EQ(study.count(), 0);

    QStringList stamps;
    const auto edit = [&](auto field) {
        change(store, field);
        stamps.append(store.config().studySettingsAt);
        EXPECT_EQ(onDisk()->studySettingsAt, stamps.last());
    };
    edit([](AppConfig &config) { config.learningSlots = 40; });
    edit([](AppConfig &config) { config.sessionSize = 10; });
    m_clock.advance(100ms);
    edit([](AppConfig &config) { config.recallOnLookup = false; });
    m_clock.advance(1h);
    edit([](AppConfig &config) { config.graduateDays = 20; });
    m_clock.set(m_clock.now() - 48h);
    edit([](AppConfig &config) { config.leechThreshold = 3; });
    EXPECT_EQ(stamps,
        (QStringList{u"2026-03-01T08:30:05Z"_s, u"2026-03-01T08:30:06Z"_s, u"2026-03-01T08:30:07Z"_s,
            u"2026-03-01T09:30:05Z"_s, u"2026-03-01T09:30:06Z"_s}));
    EXPECT_EQ(study.count(), 5);
    EXPECT_EQ(changed.count(), 6);
}

TEST_F(ConfigStoreTest, TakesMergedSettingsWithTheirOwnStamp)
{
    ConfigStore store(m_paths, m_clock);
    QSignalSpy study(&store, &ConfigStore::studySettingsChanged);
    const StudySettings merged{
        {.learningSlots = 50, .dailyNewLimit = 9, .sessionSize = 12, .recallOnLookup = false},
        m_clock.now() - 240h};
    store.applySync(merged);
    EXPECT_EQ(store.config().studySettings(), merged);
    EXPECT_EQ(onDisk()->studySettings(), merged);
    EXPECT_EQ(study.count(), 0);
    EXPECT_FALSE(store.applyingSync());
}

TEST_F(ConfigStoreTest, ReadsOldAndHalfBrokenFiles)
{
    const auto readAs = [this](const QByteArray &json) {
        EXPECT_TRUE(replaceFile(m_paths.config, json));
        return ConfigStore(m_paths, m_clock).config();
    };
    AppConfig expected;
    expected.apiKey = u"sk-1"_s;
    expected.optionHoverOCR = false;
    EXPECT_EQ(readAs(R"({"apiKey":"sk-1","optionHoverOCR":false,"learningSlots":null})"), expected);
    expected.regionKey = ModifierKey::control;
    for (const QByteArray odd : {"\"fn\"", "3", "[]", "null"})
        EXPECT_EQ(readAs(R"({"apiKey":"sk-1","optionHoverOCR":false,"regionKey":"control","hoverKey":)" + odd
                      + '}'),
            expected)
            << odd.toStdString();
    for (const char *broken : {R"({"apiKey":"sk-1","learningSlots":"30"})", "{\"apiKey\":\"sk-1\"}\n\n,", "",
             "[]", R"({"apiKey":"sk-1","excludedBundleIDs":[1]})"})
        EXPECT_EQ(readAs(broken), AppConfig()) << broken;
}

TEST_F(ConfigStoreTest, OffersNoStudySettingsWithoutAStamp)
{
    AppConfig config;
    config.studySettingsAt = u"yesterday"_s;
    EXPECT_EQ(config.studySettings(), std::nullopt);
    config.studySettingsAt = u"2026-03-01T08:30:05Z"_s;
    EXPECT_EQ(config.studySettings()->order(), (std::array<qint64, 7>{30, 8, 15, 30, 4, 30, 1}));
}

} // namespace
