#pragma once

#include "ai/Contracts.h"
#include "frame/Record.h"

#include <QList>
#include <QMap>
#include <QString>

#include <iterator>
#include <optional>
#include <tuple>
#include <type_traits>

/// Cuts what came in a reply to lengths that a card can show. A sentence of a million letters would be laid
/// out, searched and stored like any other.
namespace nimbrelle {

/// UTF-16 units of one text of a reply; the translation of the longest text that is sent has fewer.
inline constexpr qsizetype longestReplyText = 4000;
inline constexpr qsizetype longestTranslation = 20000;
inline constexpr qsizetype mostReplyItems = 64;

/// The first `units` UTF-16 units, without half of a surrogate pair at the end.
inline QString firstUnits(const QString &text, qsizetype units)
{
    if (text.size() <= units)
        return text;
    return text.first(text[units - 1].isHighSurrogate() ? units - 1 : units);
}

struct ReplyShortener {
    void operator()(QString &text) const { text = firstUnits(text, longestReplyText); }

    template <class Item> void operator()(QList<Item> &items) const
    {
        if (items.size() > mostReplyItems)
            items.resize(mostReplyItems);
        for (Item &item : items)
            (*this)(item);
    }

    void operator()(QMap<QString, QString> &texts) const
    {
        while (texts.size() > mostReplyItems)
            texts.erase(std::prev(texts.end()));
        for (QString &text : texts)
            (*this)(text);
    }

    template <class Value> void operator()(std::optional<Value> &value) const
    {
        if (value)
            (*this)(*value);
    }

    void operator()(Translation &translation) const
    {
        translation.translationZh = firstUnits(translation.translationZh, longestTranslation);
        (*this)(translation.keyTerms);
    }

    /// A record field by field; a number is never too long.
    template <class Value> void operator()(Value &value) const
    {
        if constexpr (!std::is_null_pointer_v<std::remove_const_t<decltype(flattenedOf<Value>)>>)
            (*this)(value.*flattenedOf<Value>);
        if constexpr (!std::is_null_pointer_v<std::remove_const_t<decltype(fieldsOf<Value>)>>)
            std::apply([&](const auto &...field) { ((*this)(value.*field.member), ...); }, fieldsOf<Value>);
    }
};

template <class Reply> void shorten(Reply &reply)
{
    ReplyShortener()(reply);
}

} // namespace nimbrelle
