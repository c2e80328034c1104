#pragma once

#include "frame/Record.h"

#include <QList>
#include <QString>

#include <optional>

/// The messages of the provider's protocol, with the keys as they stand on the wire. Members that nobody
/// reads are left out.
namespace nimbrelle {

struct ChatMessage {
    QString role; ///< "system", "user" or "assistant"
    QString content;

    static ChatMessage system(const QString &content)
    {
        return {.role = QStringLiteral("system"), .content = content};
    }
    static ChatMessage user(const QString &content)
    {
        return {.role = QStringLiteral("user"), .content = content};
    }
    static ChatMessage assistant(const QString &content)
    {
        return {.role = QStringLiteral("assistant"), .content = content};
    }

    bool operator==(const ChatMessage &) const = default;
};

struct ChatResponse {
    struct Message {
        std::optional<QString> content;
    };
    struct Choice {
        Message message;
    };
    QList<Choice> choices;
};
template <Is<ChatResponse::Message> Record>
inline constexpr auto fieldsOf<Record> = fields(field("content", &Record::content));
template <Is<ChatResponse::Choice> Record>
inline constexpr auto fieldsOf<Record> = fields(field("message", &Record::message));
template <Is<ChatResponse> Record>
inline constexpr auto fieldsOf<Record> = fields(field("choices", &Record::choices));

struct StreamChunk {
    struct Delta {
        std::optional<QString> content;
    };
    struct Choice {
        Delta delta;
    };
    QList<Choice> choices;
};
template <Is<StreamChunk::Delta> Record>
inline constexpr auto fieldsOf<Record> = fields(field("content", &Record::content));
template <Is<StreamChunk::Choice> Record>
inline constexpr auto fieldsOf<Record> = fields(field("delta", &Record::delta));
template <Is<StreamChunk> Record>
inline constexpr auto fieldsOf<Record> = fields(field("choices", &Record::choices));

} // namespace nimbrelle
