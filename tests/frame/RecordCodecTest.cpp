#include "frame/RecordCodec.h"

#include "support/Printers.h"

#include <gtest/gtest.h>
#include <limits>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

enum class Colour { red, darkGreen };

struct Leaf {
    QString name;
    bool isOpen = false;
    qint64 count = 0;
    double weight = 0;
    Timestamp at;
    QUuid id;
    Colour colour = Colour::red;
    std::optional<QString> noteZh;
    QStringList tags;
    std::optional<QMap<QString, QString>> forms;

    bool operator==(const Leaf &) const = default;
};

struct Branch {
    QList<Leaf> leaves;
    std::optional<Leaf> crown;

    bool operator==(const Branch &) const = default;
};

} // namespace

namespace nimbrelle {
template <> inline constexpr auto caseNames<Colour> = cases("red", "darkGreen");
template <Is<Leaf> Record>
inline constexpr auto fieldsOf<Record> = fields(field("name", &Record::name),
    field("isOpen", &Record::isOpen), field("count", &Record::count), field("weight", &Record::weight),
    field("at", &Record::at), field("id", &Record::id), field("colour", &Record::colour),
    field("noteZh", &Record::noteZh), field("tags", &Record::tags), field("forms", &Record::forms));
template <Is<Branch> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("leaves", &Record::leaves), field("crown", &Record::crown));
} // namespace nimbrelle

namespace {

const QByteArray leafJson = R"({"at":"2026-03-01T08:30:05Z","colour":"darkGreen","count":9007199254740993,)"
                            R"("id":"01234567-89AB-CDEF-0123-456789ABCDEF","isOpen":true,"name":"叶\u0000x",)"
                            R"("tags":["a","b"],"weight":0.1})";

Leaf sampleLeaf()
{
    return *decode<Leaf>(leafJson);
}

QByteArray leafWith(const char *key, const char *value)
{
    auto json = QByteArray("{") + R"("at":"2026-03-01T08:30:05Z","colour":"red","count":1,)"
        + R"("id":"01234567-89AB-CDEF-0123-456789ABCDEF","isOpen":true,"name":"x","tags":[],"weight":1,"later":[{}])";
    return json + ",\"" + key + "\":" + value + "}";
}

TEST(RecordCodec, KeepsEveryDigitAndCharacter)
{
    const Leaf leaf = sampleLeaf();
    EXPECT_EQ(leaf.name, u"叶"_s + QChar(0) + u'x');
    EXPECT_EQ(leaf.count, 9007199254740993);
    EXPECT_EQ(leaf.colour, Colour::darkGreen);
    EXPECT_EQ(encode(leaf, TextForm::canonical), leafJson);
    for (const double weight : {0.1 + 0.2, 5e-324, std::numeric_limits<double>::max(), 2.0, -0.0, 1e21}) {
        Leaf written = leaf;
        written.weight = weight;
        EXPECT_EQ(decode<Leaf>(*encode(written, TextForm::file)), written) << weight;
    }
    for (const qint64 count : {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}) {
        Leaf written = leaf;
        written.count = count;
        EXPECT_EQ(decode<Leaf>(*encode(written, TextForm::line)), written) << count;
    }
}

TEST(RecordCodec, FailsWholeOnAnyWrongType)
{
    const std::pair<const char *, const char *> wrong[]{{"isOpen", "1"}, {"count", "true"}, {"count", "30.5"},
        {"count", "1e30"}, {"count", "9223372036854775808"}, {"weight", "\"1\""}, {"weight", "true"},
        {"weight", "1e400"}, {"weight", "1.8e308"}, {"weight", "01"}, {"weight", "0x1"}, {"name", "null"},
        {"at", "\"2026-03-01T08:30:05.5Z\""}, {"id", "\"{01234567-89AB-CDEF-0123-456789ABCDEF}\""},
        {"id", "\"0123456789ABCDEF0123456789ABCDEF0123\""}, {"colour", "\"Red\""}, {"colour", "0"},
        {"noteZh", "[]"}, {"tags", "[1]"}, {"tags", "[null]"}, {"forms", "{\"past\":1}"}, {"forms", "[]"}};
    for (const auto &[key, value] : wrong) {
        // A later key of the same name overrides, except for null, which reads as absent.
        QByteArray json = leafWith(key, value);
        if (QByteArrayView(value) == "null")
            json.replace(R"("name":"x",)", "");
        EXPECT_EQ(decode<Leaf>(json), std::nullopt) << json.toStdString();
        EXPECT_EQ(decode<Branch>("{\"leaves\":[" + leafJson + "," + json + "]}"), std::nullopt);
        EXPECT_EQ(decode<Branch>("{\"leaves\":[],\"crown\":" + json + "}"), std::nullopt);
    }
}

TEST(RecordCodec, AcceptsWhatIsMeant)
{
    EXPECT_EQ(decode<Leaf>(leafWith("count", "30.0"))->count, 30);
    EXPECT_EQ(
        decode<Leaf>(leafWith("count", "-9223372036854775808"))->count, std::numeric_limits<qint64>::min());
    for (const char *zero : {"0", "-0", "0.0", "0e51", "-0E51", "0.000e99", "0e-51", "1e-400", "-1e-400"})
        EXPECT_EQ(decode<Leaf>(leafWith("weight", zero))->weight, 0.0) << zero;
    EXPECT_EQ(decode<Leaf>(leafWith("noteZh", "null"))->noteZh, std::nullopt);
    EXPECT_EQ(decode<Leaf>(leafWith("id", "\"00000000-0000-0000-0000-000000000000\""))->id, QUuid());
    EXPECT_EQ(decode<Leaf>(leafWith("id", "\"01234567-89ab-cdef-0123-456789abcdef\""))->id, sampleLeaf().id);
    EXPECT_TRUE(
        decode<Leaf>(leafWith("forms", R"({"third_person":"runs"})"))->forms->contains(u"third_person"_s));
}

TEST(RecordCodec, RefusesWhatIsNoSingleValue)
{
    for (const QByteArray &json : {QByteArray(), QByteArray(" "), leafJson + "x", leafJson + leafJson,
             leafJson + QByteArray(1, '\0'), leafJson + QByteArray("\0x", 2), leafJson.chopped(1),
             QByteArray(leafJson).replace("叶", "\xff"), QByteArray(leafJson).replace("叶", "\\ud800"),
             "\xef\xbb\xbf" + leafJson, QByteArray("```json\n" + leafJson + "\n```")})
        EXPECT_EQ(decode<Leaf>(json), std::nullopt) << json.toStdString();
    EXPECT_TRUE(decode<Leaf>(" \r\n\t" + leafJson + "\n"));
}

TEST(RecordCodec, SurvivesDeepNesting)
{
    constexpr qsizetype depth = 2'000'000;
    const QByteArray deep = QByteArray(depth, '[') + QByteArray(depth, ']');
    EXPECT_EQ(decode<QList<Leaf>>(deep), std::nullopt);
    EXPECT_TRUE(decode<Leaf>(leafWith("later2", deep.constData())));
}

TEST(RecordCodec, WritesSortedKeysWithoutNulls)
{
    Branch branch;
    branch.leaves.append(sampleLeaf());
    const QByteArray text = *encode(branch, TextForm::file);
    EXPECT_TRUE(text.startsWith("{\n \"leaves\": [\n  {\n   \"at\": ")) << text.toStdString();
    EXPECT_FALSE(text.contains("crown"));
    EXPECT_TRUE(encode(sampleLeaf(), TextForm::line)->startsWith("{\"name\":"));
}

TEST(RecordCodec, WritesOnlyWhatItCanReadBack)
{
    Leaf leaf = sampleLeaf();
    leaf.name = u"a"_s + QChar(0xd83d) + u'b' + QChar(0xde00) + QString::fromUtf8("😀") + QChar(0xd83d);
    const QString repaired = QString::fromUtf8("a\uFFFDb\uFFFD😀\uFFFD");
    EXPECT_EQ(decode<Leaf>(*encode(leaf, TextForm::file))->name, repaired);

    for (char16_t control = 0; control < 0x20;
         ++control) { // wherever it falls in what is scanned in wide steps
        leaf.name = QString(40, u'a') + QChar(control) + u"\"\\\n\t"_s + QString(40, u'é');
        EXPECT_EQ(decode<Leaf>(*encode(leaf, TextForm::file))->name, leaf.name) << int(control);
    }

    leaf.weight = std::numeric_limits<double>::infinity();
    EXPECT_EQ(decode<Leaf>(*encode(leaf, TextForm::file))->weight, std::numeric_limits<double>::max());
    leaf.weight = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(encode(leaf, TextForm::file), std::nullopt);
}

TEST(RecordCodec, TakesSnakeCaseFromTheAI)
{
    QByteArray json = leafWith("note_zh", "\"旁注\"");
    json.replace("isOpen", "is_open");
    EXPECT_EQ(decode<Leaf>(json), std::nullopt);
    const auto leaf = decode<Leaf>(json, KeyStyle::fromSnakeCase);
    ASSERT_TRUE(leaf);
    EXPECT_TRUE(leaf->isOpen);
    EXPECT_EQ(leaf->noteZh, u"旁注"_s);
    EXPECT_EQ(decode<Leaf>(leafWith("note_zh", "7"), KeyStyle::fromSnakeCase), std::nullopt);

    const std::pair<const char *, const char *> keys[]{{"meaning_zh", "meaningZh"},
        {"MEANING_ZH", "meaningZh"}, {"_note_zh_", "_noteZh_"}, {"noteZh", "noteZh"}, {"_", "_"},
        {"a__b", "aB"}, {"_x", "_x"}};
    for (const auto &[key, expected] : keys)
        EXPECT_EQ(detail::camelCased(key), expected);
}

} // namespace
