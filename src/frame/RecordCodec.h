#pragma once

#include "frame/Json.h"
#include "frame/Record.h"
#include "frame/Timestamp.h"

#include <QList>
#include <QMap>
#include <QUuid>

#include <algorithm>
#include <string>

/// The one reader and writer of records. Reading is strict: a value of another type, an unknown case name or
/// a timestamp in another form fails the whole text, at any depth; unknown keys are passed over.
namespace nimbrelle {

enum class KeyStyle {
    asDeclared,
    fromSnakeCase, ///< meaning_zh names the field meaningZh; keys without "_" are taken as they are
};

enum class TextForm {
    file, ///< indented, keys sorted
    canonical, ///< compact, keys sorted
    line, ///< compact, keys in declared order
};

namespace detail {

QString fromUtf8(std::string_view utf8);
std::optional<QUuid> uuidFrom(std::string_view text);
std::string uuidText(const QUuid &id);
/// As published for such keys: the first word lower-cased, the others capitalized.
std::string camelCased(std::string_view key);

template <class T> struct IsOptional : std::false_type { };
template <class T> struct IsOptional<std::optional<T>> : std::true_type { };
template <class T> struct IsList : std::false_type { };
template <class T> struct IsList<QList<T>> : std::true_type { };

template <class T>
concept Recorded = !std::is_same_v<std::decay_t<decltype(fieldsOf<T>)>, std::nullptr_t>;

template <class T>
inline constexpr bool hasFlattened = !std::is_same_v<std::decay_t<decltype(flattenedOf<T>)>, std::nullptr_t>;

template <class T> bool readValue(JsonValue json, T &value, KeyStyle style);
template <class T> void writeValue(JsonWriter &writer, const T &value, TextForm form);

template <class T> bool take(std::optional<T> read, T &value)
{
    if (read)
        value = *read;
    return read.has_value();
}

template <class Enum> bool readCase(JsonValue json, Enum &value)
{
    const auto text = json.string();
    const auto &names = caseNames<Enum>;
    const auto found = text ? std::find(names.begin(), names.end(), *text) : names.end();
    if (found == names.end())
        return false;
    value = static_cast<Enum>(found - names.begin());
    return true;
}

/// What the codec knows of a record at compile time.
template <Recorded Record> struct Layout {
    static constexpr const auto &all = fieldsOf<Record>;
    static constexpr std::size_t count = std::tuple_size_v<std::decay_t<decltype(all)>>;
    static_assert(count <= 64);

    using Reader = bool (*)(JsonValue, Record &, KeyStyle);
    using Writer = void (*)(JsonWriter &, const Record &, TextForm);

    template <std::size_t index> static bool readField(JsonValue json, Record &record, KeyStyle style)
    {
        constexpr auto field = std::get<index>(all);
        auto &member = record.*field.member;
        using Member = std::decay_t<decltype(member)>;
        if constexpr (IsOptional<Member>::value) {
            typename Member::value_type value{};
            if (!readValue(json, value, style))
                return false;
            member = std::move(value);
            return true;
        } else {
            Member value{};
            const bool isRead = readValue(json, value, style);
            if (isRead)
                member = std::move(value);
            return isRead || field.isLenient;
        }
    }

    template <std::size_t index>
    static void writeField(JsonWriter &writer, const Record &record, TextForm form)
    {
        constexpr auto field = std::get<index>(all);
        const auto &member = record.*field.member;
        if constexpr (IsOptional<std::decay_t<decltype(member)>>::value) {
            if (!member)
                return;
            writer.plainKey(field.key);
            writeValue(writer, *member, form);
        } else {
            writer.plainKey(field.key);
            writeValue(writer, member, form);
        }
    }

    template <std::size_t... index> static constexpr auto keysOf(std::index_sequence<index...>)
    {
        return std::array<std::string_view, count>{std::get<index>(all).key...};
    }
    template <std::size_t... index> static constexpr auto readersOf(std::index_sequence<index...>)
    {
        return std::array<Reader, count>{&readField<index>...};
    }
    template <std::size_t... index> static constexpr auto writersOf(std::index_sequence<index...>)
    {
        return std::array<Writer, count>{&writeField<index>...};
    }
    template <std::size_t... index> static constexpr std::uint64_t requiredOf(std::index_sequence<index...>)
    {
        const auto isRequired = []<class R, class M>(const Field<R, M> &) {
            return !missingTakesDefault<Record> && !IsOptional<M>::value;
        };
        return ((std::uint64_t{isRequired(std::get<index>(all))} << index) | ... | 0U);
    }
    static constexpr auto sortedOrder()
    {
        std::array<std::size_t, count> order{};
        for (std::size_t i = 0; i < count; ++i)
            order[i] = i;
        std::sort(order.begin(), order.end(), [](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
        return order;
    }

    static constexpr auto indices = std::make_index_sequence<count>{};
    static constexpr auto keys = keysOf(indices);
    static constexpr auto readers = readersOf(indices);
    static constexpr auto writers = writersOf(indices);
    static constexpr std::uint64_t required = requiredOf(indices);
    static constexpr auto sorted = sortedOrder();

    /// The position of the field named `key`, or `count`.
    static std::size_t find(std::string_view key)
    {
        const auto at = std::lower_bound(sorted.begin(), sorted.end(), key,
            [](std::size_t index, std::string_view wanted) { return keys[index] < wanted; });
        return at != sorted.end() && keys[*at] == key ? *at : count;
    }
};

template <Recorded Record> bool readRecord(JsonValue json, Record &record, KeyStyle style)
{
    using Known = Layout<Record>;
    if (!json.isObject())
        return false;
    if constexpr (hasFlattened<Record>) {
        if (!readValue(json, record.*flattenedOf<Record>, style))
            return false;
    }
    std::uint64_t seen = 0;
    const qsizetype count = json.count();
    for (qsizetype i = 0; i < count; ++i) {
        const std::string_view key = json.memberKey(i);
        const bool isSnake = style == KeyStyle::fromSnakeCase && key.find('_') != std::string_view::npos;
        const std::size_t field = isSnake ? Known::find(camelCased(key)) : Known::find(key);
        const JsonValue value = json.memberValue(i);
        if (field == Known::count || value.isNull())
            continue;
        if (!Known::readers[field](value, record, style))
            return false;
        seen |= std::uint64_t{1} << field;
    }
    return (seen & Known::required) == Known::required;
}

template <Recorded Record> void writeRecord(JsonWriter &writer, const Record &record, TextForm form)
{
    using Known = Layout<Record>;
    static_assert(!hasFlattened<Record>, "flattened records are only read");
    writer.beginObject();
    for (std::size_t i = 0; i < Known::count; ++i)
        Known::writers[form == TextForm::line ? i : Known::sorted[i]](writer, record, form);
    writer.endObject();
}

template <class Element> bool readList(JsonValue json, QList<Element> &list, KeyStyle style)
{
    if (!json.isArray())
        return false;
    const qsizetype count = json.count();
    list.resize(count);
    for (qsizetype i = 0; i < count; ++i) {
        if (!readValue(json.element(i), list[i], style))
            return false;
    }
    return true;
}

// The keys of such a map are data and never converted.
inline bool readMap(JsonValue json, QMap<QString, QString> &map)
{
    if (!json.isObject())
        return false;
    const qsizetype count = json.count();
    for (qsizetype i = 0; i < count; ++i) {
        const auto value = json.memberValue(i).string();
        if (!value)
            return false;
        map.insert(fromUtf8(json.memberKey(i)), fromUtf8(*value));
    }
    return true;
}

template <class T> bool readValue(JsonValue json, T &value, KeyStyle style)
{
    if constexpr (std::is_same_v<T, bool>) {
        return take(json.boolean(), value);
    } else if constexpr (std::is_same_v<T, qint64>) {
        return take(json.integer(), value);
    } else if constexpr (std::is_same_v<T, double>) {
        return take(json.number(), value);
    } else if constexpr (std::is_enum_v<T>) {
        return readCase(json, value);
    } else if constexpr (Recorded<T>) {
        return readRecord(json, value, style);
    } else if constexpr (IsList<T>::value) {
        return readList(json, value, style);
    } else if constexpr (std::is_same_v<T, QMap<QString, QString>>) {
        return readMap(json, value);
    } else {
        const auto text = json.string();
        if (!text)
            return false;
        if constexpr (std::is_same_v<T, QString>) {
            value = fromUtf8(*text);
            return true;
        } else if constexpr (std::is_same_v<T, Timestamp>) {
            return take(timestampFromIso(*text), value);
        } else {
            static_assert(std::is_same_v<T, QUuid>, "no JSON form for this type");
            return take(uuidFrom(*text), value);
        }
    }
}

template <class T> void writeValue(JsonWriter &writer, const T &value, TextForm form)
{
    if constexpr (std::is_same_v<T, bool>) {
        writer.boolean(value);
    } else if constexpr (std::is_same_v<T, qint64>) {
        writer.integer(value);
    } else if constexpr (std::is_same_v<T, double>) {
        writer.number(value);
    } else if constexpr (std::is_enum_v<T>) {
        writer.plain(caseName(value));
    } else if constexpr (Recorded<T>) {
        writeRecord(writer, value, form);
    } else if constexpr (IsList<T>::value) {
        writer.beginArray();
        for (const auto &element : value)
            writeValue(writer, element, form);
        writer.endArray();
    } else if constexpr (std::is_same_v<T, QMap<QString, QString>>) {
        writer.beginObject();
        for (auto it = value.cbegin(); it != value.cend(); ++it) {
            writer.key(it.key());
            writer.string(it.value());
        }
        writer.endObject();
    } else if constexpr (std::is_same_v<T, QString>) {
        writer.string(value);
    } else if constexpr (std::is_same_v<T, Timestamp>) {
        const auto text = isoCharacters(value);
        writer.plain({text.data(), text.size()});
    } else {
        static_assert(std::is_same_v<T, QUuid>, "no JSON form for this type");
        writer.plain(uuidText(value));
    }
}

} // namespace detail

/// Absent when anything in `json` breaks the form of T.
template <class T> std::optional<T> decode(QByteArrayView json, KeyStyle style = KeyStyle::asDeclared)
{
    const auto document = JsonDocument::parse(json);
    T value{};
    if (!document || !detail::readValue(document->root(), value, style))
        return std::nullopt;
    return value;
}

/// The layout that a form of text is written in.
constexpr JsonWriter::Layout layoutOf(TextForm form)
{
    return form == TextForm::file ? JsonWriter::Layout::indented : JsonWriter::Layout::compact;
}

/// Absent when the value can't be written as JSON (a NaN in it).
template <class T> std::optional<QByteArray> encode(const T &value, TextForm form)
{
    JsonWriter writer(layoutOf(form));
    detail::writeValue(writer, value, form);
    const auto text = writer.finished();
    return text ? std::optional(text->toByteArray()) : std::nullopt;
}

/// The case of that name, or absent.
template <class Enum> std::optional<Enum> caseFrom(QStringView name)
{
    for (const Enum value : allCases<Enum>()) {
        const std::string_view known = caseName(value);
        if (name == QLatin1StringView(known.data(), static_cast<qsizetype>(known.size())))
            return value;
    }
    return std::nullopt;
}

template <class Enum> QString caseText(Enum value)
{
    const std::string_view name = caseName(value);
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

} // namespace nimbrelle
