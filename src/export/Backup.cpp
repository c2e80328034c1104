#include "export/Backup.h"

#include "export/ChosenFile.h"
#include "frame/AppPaths.h"
#include "frame/Failure.h"
#include "frame/LineFile.h"
#include "frame/RecordCodec.h"

#include <QFileInfo>
#include <QSet>

#include <optional>

namespace nimbrelle {

namespace {

/// The first entry. A later form that this version could misread has another number.
struct BackupManifest {
    qint64 format = 1;
    Timestamp madeAt;

    bool operator==(const BackupManifest &) const = default;
};

} // namespace

template <Is<BackupManifest> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("format", &Record::format), field("madeAt", &Record::madeAt));

} // namespace nimbrelle

namespace nimbrelle::Backup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 knownFormat = 1;
constexpr qint64 largestFile = 256LL << 20;
const QString manifestName = u"nimbrelle-backup.json"_s;
const QString damagedFolder = u"damaged/"_s;
const QString configName = u"config.json"_s;

/// False for what breaks the form of its file.
template <class T> bool take(const QByteArray &bytes, T &place)
{
    auto value = decode<T>(bytes);
    if (value)
        place = std::move(*value);
    return value.has_value();
}

bool takeStats(const QByteArray &bytes, Content &content)
{
    content.notebook.stats.emplace();
    return take(bytes, *content.notebook.stats);
}

/// Of the settings only what travels between devices anyway: a stranger's archive must not send the key to an
/// address of its own.
bool takeSettings(const QByteArray &bytes, Content &content)
{
    AppConfig config;
    const bool isRead = take(bytes, config);
    content.notebook.settings = config.studySettings();
    return isRead;
}

bool takeLog(const QByteArray &bytes, Content &content)
{
    for (const QByteArrayView line : linesOf(bytes)) {
        if (QUtf8StringView(line).isValidUtf8())
            content.notebook.log.append(QString::fromUtf8(line));
    }
    return true;
}

using Taker = bool (*)(const QByteArray &bytes, Content &content);

bool passOver(const QByteArray &, Content &)
{
    return true;
}

/// How each file of a backup is read.
const QMap<QString, Taker> &takers()
{
    static const QMap<QString, Taker> all{
        {u"words.json"_s, [](const QByteArray &b, Content &c) { return take(b, c.notebook.words); }},
        {u"notes.json"_s, [](const QByteArray &b, Content &c) { return take(b, c.notebook.notes); }},
        {u"grammar.json"_s, [](const QByteArray &b, Content &c) { return take(b, c.notebook.grammar); }},
        {u"affixes.json"_s, [](const QByteArray &b, Content &c) { return take(b, c.notebook.affixes); }},
        {u"deleted.json"_s, [](const QByteArray &b, Content &c) { return take(b, c.notebook.deleted); }},
        {u"coach.json"_s, [](const QByteArray &b, Content &c) { return take(b, c.coach); }},
        {u"review-stats.json"_s, takeStats},
        {u"learning-log.jsonl"_s, takeLog},
        {configName, takeSettings},
        {u"sync-state.json"_s, passOver},
        {u"sync-known.json"_s, passOver},
        {u"lookup-queue.json"_s, passOver},
    };
    return all;
}

bool isOfNotebook(const QString &name)
{
    return name != configName && takers().value(name, &passOver) != &passOver;
}

std::optional<QByteArray> withoutSecrets(const QByteArray &config)
{
    AppConfig settings;
    if (!take(config, settings))
        return std::nullopt;
    settings.apiKey.clear();
    settings.syncToken.clear();
    return encode(settings, TextForm::file);
}

/// Absent for a file that is missing. One that can't be read must not look like that.
std::optional<QByteArray> bytesOf(const QString &path)
{
    auto bytes = readFile(path);
    if (!bytes && QFileInfo::exists(path))
        throw Failure(u"读不了 "_s + QFileInfo(path).fileName() + u"，备份会不完整"_s);
    return bytes;
}

/// As it goes into the archive; absent for what must not be handed on.
std::optional<Archive::Entry> entryOf(const QString &name, QByteArray bytes, Content &content)
{
    if (name == configName) {
        const auto shareable = withoutSecrets(bytes);
        if (!shareable)
            return std::nullopt;
        bytes = *shareable;
    }
    const bool isWhole = takers().value(name, &passOver)(bytes, content);
    return Archive::Entry{.name = isWhole ? name : damagedFolder + name, .bytes = bytes};
}

QString shownOf(const Draft &draft)
{
    QStringList damaged;
    for (const Archive::Entry &entry : draft.entries) {
        if (entry.name.startsWith(damagedFolder))
            damaged.append(entry.name.mid(damagedFolder.size()));
    }
    QString text = u"已导出备份"_s;
    if (!damaged.isEmpty())
        text += u"；"_s + damaged.join(u'、') + u" 读不出来，原样放在里面"_s;
    if (!draft.leftOut.isEmpty())
        text += u"；"_s + draft.leftOut.join(u'、') + u" 读不出来，里面可能有密钥，没有放进去"_s;
    return text;
}

/// Takes the entries of an archive one by one.
class Reader {
public:
    void take(const Archive::Entry &entry)
    {
        if (m_names.isEmpty())
            takeManifest(entry);
        else if (!isPassedOver(entry.name))
            takeFile(entry);
        if (m_names.contains(entry.name))
            throw Failure(u"备份里有两个 "_s + entry.name);
        m_names.insert(entry.name);
    }

    Content content() &&
    {
        if (m_names.isEmpty())
            throw Failure(u"这不是 Nimbrelle 的备份"_s);
        return std::move(m_content);
    }

private:
    static bool isPassedOver(const QString &name)
    {
        return name.startsWith(damagedFolder) && takers().contains(name.mid(damagedFolder.size()));
    }

    void takeManifest(const Archive::Entry &entry)
    {
        const auto manifest = entry.name == manifestName ? decode<BackupManifest>(entry.bytes) : std::nullopt;
        if (!manifest)
            throw Failure(u"这不是 Nimbrelle 的备份"_s);
        if (manifest->format != knownFormat)
            throw Failure(u"这个备份来自更新的版本，请先更新 Nimbrelle"_s);
        m_content.madeAt = manifest->madeAt;
    }

    void takeFile(const Archive::Entry &entry)
    {
        const Taker taker = takers().value(entry.name);
        if (!taker)
            throw Failure(u"备份里有不该有的文件，没有导入"_s);
        if (!taker(entry.bytes, m_content))
            throw Failure(u"备份里的 "_s + entry.name + u" 已经损坏，没有导入"_s);
    }

    QSet<QString> m_names;
    Content m_content;
};

} // namespace

Draft draftOf(const AppPaths &paths, Timestamp now)
{
    const BackupManifest manifest{.format = knownFormat, .madeAt = now};
    Draft draft{.entries = {{.name = manifestName,
                    .bytes = encode(manifest, TextForm::file).value_or(QByteArray())}}};
    Content content;
    for (const QString &path : paths.files()) {
        const QString name = QFileInfo(path).fileName();
        const auto bytes = bytesOf(path);
        if (!bytes)
            continue;
        if (const auto entry = entryOf(name, *bytes, content))
            draft.entries.append(*entry);
        else
            draft.leftOut.append(name);
        draft.hasNotebook = draft.hasNotebook || isOfNotebook(name);
    }
    draft.words = content.notebook.words.size();
    return draft;
}

WriteResult put(const Draft &draft, const QString &file, FileCalls &calls)
{
    FileReplacement replacement(file, FileMode::ownerOnly, calls);
    Archive::write(draft.entries, [&replacement](QByteArrayView piece) { replacement.append(piece); });
    return replacement.commit();
}

QString write(const AppPaths &paths, const QString &file, Timestamp now, FileCalls &calls)
{
    const Draft draft = draftOf(paths, now);
    const WriteResult result = put(draft, file, calls);
    if (!result)
        throw Failure(u"写不进 "_s + file + u"："_s + result.reason());
    return shownOf(draft);
}

Content read(const QString &file)
{
    return parse(readChosenFile(file, largestFile, u"这个文件太大，不会是 Nimbrelle 的备份"_s));
}

Content parse(QByteArrayView archive)
{
    Reader reader;
    Archive::read(archive, [&reader](const Archive::Entry &entry) { reader.take(entry); });
    return std::move(reader).content();
}

} // namespace nimbrelle::Backup
