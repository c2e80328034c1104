#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nimbrelle::practice {

/// `text` in small pieces as a streaming provider sends it: an English word, a few Han letters, up to a mark.
/// No character is ever divided, and the pieces together are the text.
std::vector<std::string> piecesOf(std::string_view text);

} // namespace nimbrelle::practice
