#include "cloud/url_text.h"

#include "support/text.h"

namespace sodam {

namespace {

bool plain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

std::string percentEncode(std::string_view text) {
  std::string encoded;
  encoded.reserve(text.size());
  for (char c : text)
    encoded += plain(c) ? std::string(1, c) : format("%%%02X", static_cast<unsigned char>(c));
  return encoded;
}

std::optional<std::string> percentDecode(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    if (i + 2 >= text.size()) return std::nullopt;
    const int high = hexDigit(text[i + 1]), low = hexDigit(text[i + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    decoded += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return decoded;
}

std::optional<std::map<std::string, std::string>> parseQuery(std::string_view query) {
  std::map<std::string, std::string> values;
  while (!query.empty()) {
    const auto amp = query.find('&');
    const std::string_view item = query.substr(0, amp);
    query = amp == std::string_view::npos ? std::string_view() : query.substr(amp + 1);
    if (item.empty()) continue;
    const auto equals = item.find('=');
    auto name = percentDecode(item.substr(0, equals));
    auto value = equals == std::string_view::npos ? std::optional<std::string>("")
                                                  : percentDecode(item.substr(equals + 1));
    if (!name || !value) return std::nullopt;
    values[*name] = *value;
  }
  return values;
}

}  // namespace sodam
