#include "support/utf8.h"

#include <algorithm>
#include <array>

namespace sodam::utf8 {

namespace {

struct Character {
  char32_t codePoint;
  std::size_t size;  // bytes
};

constexpr char32_t replacement = 0xFFFD;

bool isContinuation(unsigned char byte, unsigned char low = 0x80, unsigned char high = 0xBF) {
  return byte >= low && byte <= high;
}

// The character starting at `at`. The second byte's allowed range depends on
// the lead byte, which rules out overlong forms, surrogates and code points
// past U+10FFFF.
Character decode(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  std::size_t size = 0;
  unsigned char low = 0x80, high = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    size = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    size = 3;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    size = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return {replacement, 1};
  }
  if (text.size() - at < size || !isContinuation(byte(1), low, high)) return {replacement, 1};
  char32_t codePoint = lead & (0xFF >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if (!isContinuation(byte(i))) return {replacement, 1};
    codePoint = (codePoint << 6) | (byte(i) & 0x3F);
  }
  return {codePoint, size};
}

bool isWhiteSpace(char32_t c) {
  static constexpr std::array<char32_t, 9> others{0x0020, 0x0085, 0x00A0, 0x1680, 0x2028,
                                                  0x2029, 0x202F, 0x205F, 0x3000};
  if (c >= 0x09 && c <= 0x0D) return true;
  if (c >= 0x2000 && c <= 0x200A) return true;
  return std::find(others.begin(), others.end(), c) != others.end();
}

// East Asian wide and full-width characters, which terminals draw two
// columns wide.
bool isWide(char32_t c) {
  struct Range {
    char32_t first;
    char32_t last;
  };
  static constexpr std::array<Range, 12> wide{{{0x1100, 0x115F},
                                               {0x2E80, 0x303E},
                                               {0x3041, 0x33FF},
                                               {0x3400, 0x4DBF},
                                               {0x4E00, 0x9FFF},
                                               {0xA000, 0xA4CF},
                                               {0xAC00, 0xD7A3},
                                               {0xF900, 0xFAFF},
                                               {0xFE30, 0xFE4F},
                                               {0xFF00, 0xFF60},
                                               {0xFFE0, 0xFFE6},
                                               {0x20000, 0x3FFFD}}};
  return std::any_of(wide.begin(), wide.end(),
                     [c](const Range& r) { return c >= r.first && c <= r.last; });
}

}  // namespace

bool isValid(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const Character c = decode(text, at);
    // A replacement character written out is three bytes; a broken byte is one.
    if (c.codePoint == replacement && c.size == 1) return false;
    at += c.size;
  }
  return true;
}

std::size_t length(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at += decode(text, at).size)
    ++count;
  return count;
}

std::string prefix(std::string_view text, std::size_t count) {
  std::size_t at = 0;
  for (std::size_t taken = 0; taken < count && at < text.size(); ++taken) {
    at += decode(text, at).size;
  }
  return std::string(text.substr(0, at));
}

std::string trim(std::string_view text) {
  std::size_t begin = text.size();
  std::size_t end = 0;
  for (std::size_t at = 0; at < text.size();) {
    const auto character = decode(text, at);
    if (!isWhiteSpace(character.codePoint)) {
      begin = std::min(begin, at);
      end = at + character.size;
    }
    at += character.size;
  }
  return begin < end ? std::string(text.substr(begin, end - begin)) : std::string();
}

std::size_t columns(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size();) {
    const Character c = decode(text, at);
    count += isWide(c.codePoint) ? 2 : 1;
    at += c.size;
  }
  return count;
}

std::string printable(std::string_view text, std::size_t limit) {
  static constexpr char hex[] = "0123456789abcdef";
  std::string out;
  std::size_t at = 0;
  for (std::size_t taken = 0; at < text.size() && taken < limit; ++taken) {
    const auto [codePoint, size] = decode(text, at);
    const bool stray = codePoint == replacement && size == 1;
    // C0 and C1 controls both steer a terminal.
    const bool control = codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F);
    if (codePoint == '\n') {
      out += "\\n";
    } else if (codePoint == '\t') {
      out += "\\t";
    } else if (stray || control) {
      for (std::size_t i = at; i < at + size; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        out += "\\x";
        out += hex[byte >> 4];
        out += hex[byte & 15];
      }
    } else {
      out.append(text.substr(at, size));
    }
    at += size;
  }
  if (at < text.size()) out += "…";
  return out;
}

}  // namespace sodam::utf8
