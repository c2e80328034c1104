#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <string>
#include <string_view>

/// Small help round the JSON library, so that the writers below read like the objects they write.
namespace nimbrelle::practice {

class JsonText {
public:
    JsonText() : m_writer(m_buffer) { }

    template <typename Members> JsonText &object(Members &&members)
    {
        m_writer.StartObject();
        members();
        m_writer.EndObject();
        return *this;
    }
    template <typename Elements> JsonText &array(Elements &&elements)
    {
        m_writer.StartArray();
        elements();
        m_writer.EndArray();
        return *this;
    }
    JsonText &key(std::string_view text)
    {
        m_writer.Key(text.data(), static_cast<rapidjson::SizeType>(text.size()));
        return *this;
    }
    JsonText &string(std::string_view text)
    {
        m_writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
        return *this;
    }
    JsonText &boolean(bool value)
    {
        m_writer.Bool(value);
        return *this;
    }
    JsonText &integer(int64_t value)
    {
        m_writer.Int64(value);
        return *this;
    }
    JsonText &null()
    {
        m_writer.Null();
        return *this;
    }
    JsonText &member(std::string_view name, std::string_view text) { return key(name).string(text); }
    /// A member that is left out when there is nothing to say.
    JsonText &memberUnlessEmpty(std::string_view name, std::string_view text)
    {
        return text.empty() ? *this : member(name, text);
    }

    std::string text() const { return {m_buffer.GetString(), m_buffer.GetSize()}; }

private:
    rapidjson::StringBuffer m_buffer;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer;
};

} // namespace nimbrelle::practice
