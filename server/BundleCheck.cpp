#include "server/BundleCheck.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

namespace nimbrelle::server {

namespace {

constexpr int maxDepth = 64;

// A false result of any of these ends the reading.
class WordCounter : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, WordCounter> {
public:
    std::int64_t words() const { return m_words; }

    bool Null()
    {
        if (isWordsValue())
            return true;
        return Default();
    }
    bool Default()
    {
        countElement();
        return m_depth > 0 && !isWordsValue();
    }
    bool Key(const char *name, rapidjson::SizeType length, bool)
    {
        if (m_depth == 1)
            m_inWords = std::string_view(name, length) == "words";
        return true;
    }
    bool StartObject()
    {
        countElement();
        return !isWordsValue() && ++m_depth <= maxDepth;
    }
    bool EndObject(rapidjson::SizeType)
    {
        --m_depth;
        return true;
    }
    bool StartArray()
    {
        countElement();
        if (isWordsValue())
            m_words = 0;
        return m_depth > 0 && ++m_depth <= maxDepth;
    }
    bool EndArray(rapidjson::SizeType)
    {
        --m_depth;
        return true;
    }

private:
    bool isWordsValue() const { return m_inWords && m_depth == 1; }
    void countElement()
    {
        if (m_inWords && m_depth == 2)
            ++m_words;
    }

    int m_depth = 0;
    bool m_inWords = false;
    std::int64_t m_words = 0;
};

} // namespace

std::optional<std::int64_t> countWords(std::string_view document)
{
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag
        | rapidjson::kParseValidateEncodingFlag;
    rapidjson::MemoryStream stream(document.data(), document.size());
    rapidjson::Reader reader;
    WordCounter counter;
    // The reader takes a NUL for the end of its input.
    if (!reader.Parse<flags>(stream, counter) || stream.Tell() != document.size())
        return std::nullopt;
    return counter.words();
}

} // namespace nimbrelle::server
