#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbrelle::practice {

struct ChatMessage {
    std::string role;
    std::string content;
};

/// What a client asks of the chat-completions address; members that make no difference here are left out.
struct ChatRequest {
    std::vector<ChatMessage> messages; ///< never empty
    bool stream = false;
    bool wantsJson = false;

    /// The content of the first system message, and of the first and the last user message; empty when there
    /// is none.
    std::string_view systemText() const;
    std::string_view opening() const;
    std::string_view question() const;
    bool isFirstQuestion() const { return opening().data() == question().data(); }
};

/// Absent for anything that is no such request.
std::optional<ChatRequest> readChatRequest(std::string_view json);

} // namespace nimbrelle::practice
