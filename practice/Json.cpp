#include "practice/Json.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace nimbrelle::practice {

namespace {

Value nameFor(std::string_view name)
{
    return Value(rapidjson::StringRef(name.data(), name.size()));
}

} // namespace

std::string_view textOf(const Value &value)
{
    return value.IsString() ? std::string_view(value.GetString(), value.GetStringLength())
                            : std::string_view();
}

const Value *memberAt(const Value &object, std::string_view name)
{
    if (!object.IsObject())
        return nullptr;
    const auto found = object.FindMember(nameFor(name));
    return found == object.MemberEnd() ? nullptr : &found->value;
}

std::string_view textAt(const Value &object, std::string_view name)
{
    const Value *value = memberAt(object, name);
    return value ? textOf(*value) : std::string_view();
}

std::span<const Value> listAt(const Value &object, std::string_view name)
{
    const Value *value = memberAt(object, name);
    return value && value->IsArray() ? std::span(value->Begin(), value->End()) : std::span<const Value>();
}

std::span<const Value::Member> membersAt(const Value &object, std::string_view name)
{
    const Value *value = memberAt(object, name);
    if (!value || !value->IsObject() || value->ObjectEmpty())
        return {};
    return {&*value->MemberBegin(), value->MemberCount()};
}

bool isTrueAt(const Value &object, std::string_view name)
{
    const Value *value = memberAt(object, name);
    return value && value->IsTrue();
}

JsonObject &JsonObject::put(std::string_view name, Value value)
{
    const auto known = m_object.FindMember(nameFor(name));
    auto &allocator = m_object.GetAllocator();
    if (known != m_object.MemberEnd())
        known->value = value;
    else
        m_object.AddMember(
            Value(name.data(), static_cast<unsigned>(name.size()), allocator), value, allocator);
    return *this;
}

JsonObject &JsonObject::set(std::string_view name, std::string_view text)
{
    return put(name, Value(text.data(), static_cast<unsigned>(text.size()), m_object.GetAllocator()));
}

JsonObject &JsonObject::set(std::string_view name, const Value &value)
{
    return put(name, Value(value, m_object.GetAllocator()));
}

JsonObject &JsonObject::set(std::string_view name, std::span<const JsonObject> list)
{
    Value array(rapidjson::kArrayType);
    for (const JsonObject &object : list)
        array.PushBack(Value(object.m_object, m_object.GetAllocator()), m_object.GetAllocator());
    return put(name, std::move(array));
}

JsonObject &JsonObject::copy(const Value &object, std::initializer_list<std::string_view> names)
{
    for (const std::string_view name : names) {
        if (const Value *value = memberAt(object, name))
            set(name, *value);
    }
    return *this;
}

std::string JsonObject::text() const
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    m_object.Accept(writer);
    return {buffer.GetString(), buffer.GetSize()};
}

} // namespace nimbrelle::practice
