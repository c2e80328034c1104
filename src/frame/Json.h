#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

/// JSON text in and out, strict about types. Only Json.cpp sees the library below.
namespace nimbrelle {

/// A value inside a JsonDocument, valid as long as that document. Each reader is absent for another type.
class JsonValue {
public:
    bool isNull() const;
    bool isArray() const;
    bool isObject() const;

    std::optional<bool> boolean() const;
    /// A whole number that 64 bits hold; 30.0 is one, 30.5 and 1e30 are not.
    std::optional<qint64> integer() const;
    std::optional<double> number() const;
    /// UTF-8, and valid.
    std::optional<std::string_view> string() const;

    /// Elements of an array or members of an object, in the order of the text; 0 for anything else.
    qsizetype count() const;
    JsonValue element(qsizetype index) const;
    std::string_view memberKey(qsizetype index) const;
    JsonValue memberValue(qsizetype index) const;

    explicit JsonValue(const void *value) : m_value(value) { }

private:
    const void *m_value;
};

class JsonDocument {
public:
    /// Absent unless `utf8` is valid UTF-8 and exactly one JSON value with nothing but white space round it.
    /// Nesting may be as deep as memory allows.
    static std::optional<JsonDocument> parse(QByteArrayView utf8);

    JsonValue root() const;

    ~JsonDocument();
    JsonDocument(JsonDocument &&) noexcept;
    JsonDocument &operator=(JsonDocument &&) noexcept;

private:
    struct Parsed;
    explicit JsonDocument(std::unique_ptr<Parsed> parsed);
    std::unique_ptr<Parsed> m_parsed;
};

/// Writes one JSON value from begin to end. A failure of any step shows at finished().
class JsonWriter {
public:
    enum class Layout { compact, indented };

    /// Takes finished pieces of the text in order; what is still held at the end is in finished().
    using Drain = std::function<void(QByteArrayView piece)>;

    /// With a drain, a long text is never in memory as a whole.
    explicit JsonWriter(Layout layout, Drain drain = {});
    ~JsonWriter();

    void beginObject();
    void key(QStringView text);
    void plainKey(std::string_view text); ///< see plain()
    void endObject();
    void beginArray();
    void endArray();

    void boolean(bool value);
    void integer(qint64 value);
    /// Infinities become the largest finite value; a NaN fails the writing.
    void number(double value);
    /// An unpaired surrogate is written as U+FFFD.
    void string(QStringView text);
    /// ASCII without quotation marks, backslashes and control characters; written as it is.
    void plain(std::string_view text);

    /// The text, or what no drain has taken of it, valid as long as the writer; absent when a step failed or
    /// the value is incomplete.
    std::optional<QByteArrayView> finished() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace nimbrelle
