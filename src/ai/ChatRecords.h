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
template <>
inline constexpr auto fieldsOf<ChatResponse::Message> = fields("content", &ChatResponse::Message::content);
template <>
inline constexpr auto fieldsOf<ChatResponse::Choice> = fields("message", &ChatResponse::Choice::message);
template <> inline constexpr auto fieldsOf<ChatResponse> = fields("choices", &ChatResponse::choices);

struct StreamChunk {
    struct Delta {
        std::optional<QString> content;
    };
    struct Choice {
        Delta delta;
    };
    QList<Choice> choices;
};
template <>
inline constexpr auto fieldsOf<StreamChunk::Delta> = fields("content", &StreamChunk::Delta::content);
template <>
inline constexpr auto fieldsOf<StreamChunk::Choice> = fields("delta", &StreamChunk::Choice::delta);
template <> inline constexpr auto fieldsOf<StreamChunk> = fields("choices", &StreamChunk::choices);

} // namespace nimbrelle
