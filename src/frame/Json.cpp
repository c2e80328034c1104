#include "frame/Json.h"

#include "frame/Text.h"

#include <QStringEncoder>
#include <QUtf8StringView>

// Errors are reported by results here; the library's own assertions would end the process.
#define RAPIDJSON_ASSERT(condition) Q_ASSERT(condition)
// Strings are scanned sixteen bytes at a time where the processor can.
#if defined(__SSE2__)
#define RAPIDJSON_SSE2
#elif defined(__ARM_NEON)
#define RAPIDJSON_NEON
#endif
#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <rapidjson/document.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <variant>

namespace nimbrelle {

namespace {

const rapidjson::Value &valueOf(const void *value)
{
    return *static_cast<const rapidjson::Value *>(value);
}

std::string_view viewOf(const rapidjson::Value &text)
{
    return {text.GetString(), text.GetStringLength()};
}

// Iterative, so that deep nesting can't exhaust the stack; numbers as text, because the library's own exact
// reading makes 2^n of a zero with a large exponent, such as 0e51.
constexpr unsigned readFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;

/// Builds a document from what the reader finds, and reads its numbers.
class Builder : public rapidjson::Document {
public:
    bool RawNumber(const char *text, rapidjson::SizeType length, bool)
    {
        const char *const end = text + length;
        std::int64_t whole = 0;
        const auto asWhole = std::from_chars(text, end, whole);
        if (asWhole.ec == std::errc() && asWhole.ptr == end)
            return whole == 0 && *text == '-' ? Double(-0.0) : Int64(whole);
        double number = 0;
        if (std::from_chars(text, end, number).ec == std::errc())
            return Double(number);
        // Too small for a double is 0 in the wider type's eyes too; too large fails the text.
        long double wide = 0;
        return std::from_chars(text, end, wide).ec == std::errc() && std::abs(wide) < 1 && Double(0);
    }
};

/// The library's scan of sixteen bytes takes the last control characters for ordinary ones and writes them as
/// they are, which no reader takes.
bool isMissedByScan(QStringView text)
{
    bool isMissed = false;
    for (const QChar c : text) // without an early end, which the compiler makes wide steps of
        isMissed |= c.unicode() >= 0x1a && c.unicode() <= 0x1f;
    return isMissed;
}

std::string escaped(std::string_view utf8)
{
    constexpr std::string_view hex = "0123456789ABCDEF";
    constexpr std::string_view meant = "\"\\\b\f\n\r\t";
    constexpr std::string_view letters = "\"\\bfnrt";
    std::string text;
    for (const char c : utf8) {
        const auto code = static_cast<unsigned char>(c);
        if (const std::size_t at = meant.find(c); at != std::string_view::npos)
            text += {'\\', letters[at]};
        else if (code < 0x20)
            text.append("\\u00").append({hex[code / 16U], hex[code % 16U]});
        else
            text += c;
    }
    return text;
}

/// A writer that also takes strings known to need no escaping, such as keys: they are the greater part of a
/// file.
template <class Base> class PlainWriter : public Base {
public:
    using Base::Base;

    bool plain(std::string_view text)
    {
        if constexpr (std::is_same_v<Base, rapidjson::Writer<rapidjson::StringBuffer>>)
            this->Prefix(rapidjson::kStringType);
        else
            this->PrettyPrefix(rapidjson::kStringType);
        char *at = this->os_->Push(text.size() + 2);
        *at++ = '"';
        at = std::copy(text.begin(), text.end(), at);
        *at = '"';
        return this->EndValue(true);
    }
};

} // namespace

bool JsonValue::isNull() const
{
    return valueOf(m_value).IsNull();
}

bool JsonValue::isArray() const
{
    return valueOf(m_value).IsArray();
}

bool JsonValue::isObject() const
{
    return valueOf(m_value).IsObject();
}

std::optional<bool> JsonValue::boolean() const
{
    const auto &value = valueOf(m_value);
    return value.IsBool() ? std::optional(value.GetBool()) : std::nullopt;
}

std::optional<qint64> JsonValue::integer() const
{
    const auto &value = valueOf(m_value);
    if (value.IsInt64())
        return value.GetInt64();
    if (!value.IsDouble())
        return std::nullopt;
    const double number = value.GetDouble();
    constexpr double beyond = 9223372036854775808.0; // 2^63; the largest double below it does fit
    if (!(number >= -beyond && number < beyond) || std::trunc(number) != number)
        return std::nullopt;
    return static_cast<qint64>(number);
}

std::optional<double> JsonValue::number() const
{
    const auto &value = valueOf(m_value);
    return value.IsNumber() ? std::optional(value.GetDouble()) : std::nullopt;
}

std::optional<std::string_view> JsonValue::string() const
{
    const auto &value = valueOf(m_value);
    return value.IsString() ? std::optional(viewOf(value)) : std::nullopt;
}

qsizetype JsonValue::count() const
{
    const auto &value = valueOf(m_value);
    if (value.IsArray())
        return static_cast<qsizetype>(value.Size());
    return value.IsObject() ? static_cast<qsizetype>(value.MemberCount()) : 0;
}

JsonValue JsonValue::element(qsizetype index) const
{
    return JsonValue(&valueOf(m_value)[static_cast<rapidjson::SizeType>(index)]);
}

std::string_view JsonValue::memberKey(qsizetype index) const
{
    return viewOf((valueOf(m_value).MemberBegin() + index)->name);
}

JsonValue JsonValue::memberValue(qsizetype index) const
{
    return JsonValue(&(valueOf(m_value).MemberBegin() + index)->value);
}

struct JsonDocument::Parsed {
    Builder document;
};

JsonDocument::JsonDocument(std::unique_ptr<Parsed> parsed) : m_parsed(std::move(parsed)) { }

JsonDocument::~JsonDocument() = default;
JsonDocument::JsonDocument(JsonDocument &&) noexcept = default;
JsonDocument &JsonDocument::operator=(JsonDocument &&) noexcept = default;

std::optional<JsonDocument> JsonDocument::parse(QByteArrayView utf8)
{
    if (!QUtf8StringView(utf8).isValidUtf8())
        return std::nullopt;
    const auto size = static_cast<std::size_t>(utf8.size());
    rapidjson::MemoryStream stream(utf8.data(), size);
    auto parsed = std::make_unique<Parsed>();
    rapidjson::Reader reader;
    auto events = [&](rapidjson::Document &) {
        return !reader.Parse<readFlags>(stream, parsed->document).IsError();
    };
    parsed->document.Populate(events);
    // A NUL looks like the end of the text to the reader, hence the second look at where it stopped.
    if (reader.HasParseError() || stream.Tell() != size)
        return std::nullopt;
    return JsonDocument(std::move(parsed));
}

JsonValue JsonDocument::root() const
{
    return JsonValue(static_cast<const rapidjson::Value *>(&m_parsed->document));
}

struct JsonWriter::State {
    using Compact = PlainWriter<rapidjson::Writer<rapidjson::StringBuffer>>;
    using Indented = PlainWriter<rapidjson::PrettyWriter<rapidjson::StringBuffer>>;

    State(Layout layout, Drain drainOfPieces) : drain(std::move(drainOfPieces))
    {
        if (layout == Layout::compact) {
            writer.emplace<Compact>(sink);
            return;
        }
        writer.emplace<Indented>(sink).SetIndent(' ', 1);
    }

    // The library's writer goes on after a failed step and calls itself complete, so each step is counted.
    template <class Step> void run(Step step)
    {
        const bool done = std::visit(
            [&step](auto &chosen) -> bool {
                if constexpr (std::is_same_v<std::decay_t<decltype(chosen)>, std::monostate>)
                    return false;
                else
                    return step(chosen);
            },
            writer);
        failed = failed || !done;
    }

    bool isComplete() const
    {
        return std::visit(
            [](const auto &chosen) -> bool {
                if constexpr (std::is_same_v<std::decay_t<decltype(chosen)>, std::monostate>)
                    return false;
                else
                    return chosen.IsComplete();
            },
            writer);
    }

    // Only ever between two values, so that a piece is never cut inside one.
    void drainPiece()
    {
        if (!drain || sink.GetSize() < pieceSize)
            return;
        drain(QByteArrayView(sink.GetString(), static_cast<qsizetype>(sink.GetSize())));
        sink.Clear();
    }

    static constexpr std::size_t pieceSize = 256 * 1024;

    Drain drain;
    rapidjson::StringBuffer sink;
    std::variant<std::monostate, Compact, Indented> writer;
    QByteArray utf8; // reused, so that a string costs no allocation
    bool failed = false;
};

JsonWriter::JsonWriter(Layout layout, Drain drain)
    : m_state(std::make_unique<State>(layout, std::move(drain)))
{
}

JsonWriter::~JsonWriter() = default;

void JsonWriter::beginObject()
{
    m_state->run([](auto &writer) { return writer.StartObject(); });
}

void JsonWriter::key(QStringView text)
{
    string(text);
}

void JsonWriter::plainKey(std::string_view text)
{
    plain(text);
}

void JsonWriter::endObject()
{
    m_state->run([](auto &writer) { return writer.EndObject(); });
    m_state->drainPiece();
}

void JsonWriter::beginArray()
{
    m_state->run([](auto &writer) { return writer.StartArray(); });
}

void JsonWriter::endArray()
{
    m_state->run([](auto &writer) { return writer.EndArray(); });
}

void JsonWriter::boolean(bool value)
{
    m_state->run([value](auto &writer) { return writer.Bool(value); });
}

void JsonWriter::integer(qint64 value)
{
    m_state->run([value](auto &writer) { return writer.Int64(value); });
}

void JsonWriter::number(double value)
{
    constexpr double largest = std::numeric_limits<double>::max();
    const double finite = std::isnan(value) ? value : std::clamp(value, -largest, largest);
    m_state->run([finite](auto &writer) { return writer.Double(finite); });
}

void JsonWriter::string(QStringView text)
{
    QByteArray &utf8 = m_state->utf8;
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    utf8.resize(encoder.requiredSpace(text.size()));
    const char *end = encoder.appendToBuffer(utf8.data(), text);
    if (encoder.hasError()) {
        string(wellFormed(text.toString()));
        return;
    }
    if (isMissedByScan(text)) {
        plain(escaped({utf8.constData(), end}));
        return;
    }
    m_state->run([&utf8, end](auto &writer) {
        return writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(end - utf8.constData()));
    });
}

void JsonWriter::plain(std::string_view text)
{
    m_state->run([text](auto &writer) { return writer.plain(text); });
}

std::optional<QByteArrayView> JsonWriter::finished() const
{
    if (m_state->failed || !m_state->isComplete())
        return std::nullopt;
    return QByteArrayView(m_state->sink.GetString(), static_cast<qsizetype>(m_state->sink.GetSize()));
}

} // namespace nimbrelle
