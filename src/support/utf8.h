#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sodam::utf8 {

// Text as the user reads it is counted in characters (code points), never in
// bytes. A byte that does not start a well-formed sequence counts as one
// character of its own, so damaged text is handled, never rejected.

// The number of characters.
std::size_t length(std::string_view text);
// The first `count` characters; never ends inside a character.
std::string prefix(std::string_view text, std::size_t count);
// The columns a terminal gives the text: two for each wide character
// (Hangul, CJK ideographs and kana, full-width forms), one for any other.
std::size_t columns(std::string_view text);
// Whether every byte belongs to a well-formed sequence.
bool isValid(std::string_view text);

// Without white space (ASCII and Unicode, line breaks included) at both ends.
std::string trim(std::string_view text);

// Text fit to quote in a message on a terminal: line breaks, tabs, other
// control characters and stray bytes written as escapes (\n, \x1b), at most
// `limit` characters of the text, then "…" when there was more.
std::string printable(std::string_view text, std::size_t limit = 80);

}  // namespace sodam::utf8
