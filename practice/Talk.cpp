#include "practice/Talk.h"

#include <algorithm>

namespace nimbrelle::practice {

namespace {

bool fits(const Value &answer, std::string_view question)
{
    const auto words = listAt(answer, "asks");
    const auto isAsked = [question](const Value &word) {
        return question.find(textOf(word)) != std::string_view::npos;
    };
    return words.empty() || std::ranges::any_of(words, isAsked);
}

} // namespace

std::string Talk::answer(std::string_view name, std::string_view question) const
{
    for (const Value &answer : listAt(m_file, name)) {
        if (!fits(answer, question))
            continue;
        std::string text;
        for (const Value &part : listAt(answer, "says"))
            text += paragraph(part);
        if (!text.empty())
            return isTrueAt(answer, "short") ? text : text.append("\n\n").append(textAt(m_file, "signature"));
    }
    return {};
}

std::string Talk::paragraph(const Value &paragraph) const
{
    std::string text(textAt(paragraph, "lead"));
    if (!memberAt(paragraph, "of"))
        return text;
    const auto subjects = m_subjects.find(textAt(paragraph, "of"));
    if (subjects == m_subjects.end() || subjects->second.empty())
        return std::string(textAt(paragraph, "none"));
    const Value *most = memberAt(paragraph, "most");
    const size_t count = std::min<size_t>(subjects->second.size(), most ? most->GetUint() : 1);
    for (size_t i = 0; i < count; ++i) {
        bool isWhole = true;
        text += i == 0 ? "" : textAt(paragraph, "between");
        text += filled(textAt(paragraph, "each"), subjects->second[i].value(), isWhole);
    }
    return text.append(textAt(paragraph, "end"));
}

std::string Talk::filled(std::string_view form, const Value &subject, bool &isWhole) const
{
    std::string text;
    for (size_t at; (at = form.find_first_of("{[")) != std::string_view::npos;) {
        const bool isMember = form[at] == '{';
        const size_t end = form.find(isMember ? '}' : ']', at);
        const std::string_view inside = form.substr(at + 1, end - at - 1);
        bool isPartWhole = true;
        const std::string part = isMember ? member(inside, subject) : filled(inside, subject, isPartWhole);
        text.append(form.substr(0, at)).append(isPartWhole ? part : "");
        isWhole = isWhole && !(isMember && part.empty());
        form.remove_prefix(end + 1);
    }
    return text.append(form);
}

/// A text, perhaps under another name; of a list each element in the form that the file has for it.
std::string Talk::member(std::string_view name, const Value &subject) const
{
    std::string text(textAt(subject, name));
    if (const Value *names = memberAt(m_file, "names"); names && memberAt(*names, name))
        return std::string(textAt(*memberAt(*names, name), text));
    bool isWhole = true;
    for (const Value &element : listAt(subject, name))
        text += filled(textAt(*memberAt(m_file, "lists"), name), element, isWhole);
    return text;
}

} // namespace nimbrelle::practice
