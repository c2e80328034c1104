#pragma once

#include <rapidjson/document.h>
#include <span>
#include <string>
#include <string_view>

/// Small help round the JSON library.
namespace nimbrelle::practice {

using Value = rapidjson::Value;

std::string_view textOf(const Value &value); ///< empty for what is no text

/// A member of an object; empty where it is missing or of another kind.
std::string_view textAt(const Value &object, std::string_view name);
std::span<const Value> listAt(const Value &object, std::string_view name);
std::span<const Value::Member> membersAt(const Value &object, std::string_view name);
bool isTrueAt(const Value &object, std::string_view name);
/// Null where it is missing.
const Value *memberAt(const Value &object, std::string_view name);

/// An object in the making. What is set is copied, and setting a member again replaces it.
class JsonObject {
public:
    JsonObject() : m_object(rapidjson::kObjectType) { }
    explicit JsonObject(const Value &object) { m_object.CopyFrom(object, m_object.GetAllocator()); }

    JsonObject &set(std::string_view name, std::string_view text);
    JsonObject &set(std::string_view name, const Value &value);
    JsonObject &set(std::string_view name, const JsonObject &object) { return set(name, object.value()); }
    JsonObject &set(std::string_view name, std::span<const JsonObject> list);
    /// Sets the members of these names as `object` has them.
    JsonObject &copy(const Value &object, std::initializer_list<std::string_view> names);

    const Value &value() const { return m_object; }
    std::string text() const;

private:
    JsonObject &put(std::string_view name, Value value);

    rapidjson::Document m_object;
};

} // namespace nimbrelle::practice
