#include "camerawatch/log_entry.h"

#include <cmath>

#include "support/calendar.h"
#include "support/json.h"
#include "support/text.h"

namespace sodam {

namespace {

// Reads exactly `count` digits at `at`, moving past them.
std::optional<int> digits(std::string_view text, std::size_t& at, std::size_t count) {
  if (at + count > text.size()) return std::nullopt;
  int value = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const char c = text[at + i];
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  at += count;
  return value;
}

bool expect(std::string_view text, std::size_t& at, char c) {
  if (at >= text.size() || text[at] != c) return false;
  ++at;
  return true;
}

// The digits after the decimal point as a fraction of a second.
std::optional<double> fraction(std::string_view text, std::size_t& at) {
  constexpr std::size_t mostDigits = 9;
  double value = 0;
  double scale = 0.1;
  const std::size_t start = at;
  while (at < text.size() && text[at] >= '0' && text[at] <= '9' && at - start < mostDigits) {
    value += (text[at] - '0') * scale;
    scale /= 10;
    ++at;
  }
  if (at == start) return std::nullopt;
  return value;
}

// Seconds east of UTC: "Z", "+hhmm" or "+hh:mm"; the zone ends the text.
std::optional<int> zoneOffset(std::string_view text, std::size_t at) {
  if (text.substr(at) == "Z") return 0;
  if (at >= text.size() || (text[at] != '+' && text[at] != '-')) return std::nullopt;
  const int sign = text[at++] == '-' ? -1 : 1;
  const auto hours = digits(text, at, 2);
  if (at < text.size() && text[at] == ':') ++at;
  const auto minutes = digits(text, at, 2);
  if (!hours || !minutes || at != text.size() || *hours > 23 || *minutes > 59) return std::nullopt;
  return sign * (*hours * 3600 + *minutes * 60);
}

}  // namespace

std::optional<double> parseLogTimestamp(std::string_view text) {
  std::size_t at = 0;
  const auto year = digits(text, at, 4);
  if (!year || !expect(text, at, '-')) return std::nullopt;
  const auto month = digits(text, at, 2);
  if (!month || !expect(text, at, '-')) return std::nullopt;
  const auto day = digits(text, at, 2);
  if (!day || !expect(text, at, ' ')) return std::nullopt;
  const auto hour = digits(text, at, 2);
  if (!hour || !expect(text, at, ':')) return std::nullopt;
  const auto minute = digits(text, at, 2);
  if (!minute || !expect(text, at, ':')) return std::nullopt;
  const auto second = digits(text, at, 2);
  if (!second || !expect(text, at, '.')) return std::nullopt;
  const auto part = fraction(text, at);
  const auto offset = zoneOffset(text, at);
  if (!part || !offset) return std::nullopt;
  if (*month < 1 || *month > 12 || *day < 1 || *day > daysInMonth(*year, *month) || *hour > 23 ||
      *minute > 59 || *second > 59) {
    return std::nullopt;
  }
  const auto days = daysFromCivil(*year, *month, *day);
  const auto local = days * 86400 + *hour * 3600 + *minute * 60 + *second;
  return static_cast<double>(local - *offset) + *part;
}

std::string lastPathComponent(std::string_view path) {
  while (path.size() > 1 && path.back() == '/')
    path.remove_suffix(1);
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos || path.size() == 1) return std::string(path);
  return std::string(path.substr(slash + 1));
}

std::optional<LogEntry> parseLogLine(std::string_view line) {
  const auto parsed = parseJson(line);
  if (!parsed || !parsed->is_object()) return std::nullopt;
  auto message = jsonRequired<std::string>(*parsed, "eventMessage");
  const auto stamp = jsonRequired<std::string>(*parsed, "timestamp");
  if (!message || !stamp) return std::nullopt;
  const auto time = parseLogTimestamp(*stamp);
  if (!time) return std::nullopt;
  LogEntry entry;
  entry.time = *time;
  entry.path = jsonRequired<std::string>(*parsed, "processImagePath").value_or("");
  entry.pid = jsonRequired<std::int64_t>(*parsed, "processID").value_or(0);
  entry.process = lastPathComponent(entry.path);
  entry.message = std::move(*message);
  return entry;
}

std::vector<std::string_view> splitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  std::size_t at = 0;
  while (at < text.size()) {
    auto end = text.find('\n', at);
    if (end == std::string_view::npos) end = text.size();
    if (end > at) lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

std::vector<LogEntry> parseLogOutput(std::string_view output) {
  std::vector<LogEntry> entries;
  for (const auto line : splitLines(output)) {
    if (auto entry = parseLogLine(line)) entries.push_back(std::move(*entry));
  }
  return entries;
}

std::string logWindowStamp(double unixSeconds, const TimeZone& zone) {
  const auto c = Calendar(zone).components(Date::fromUnix(unixSeconds));
  return format("%04d-%02d-%02d %02d:%02d:%02d", c.year, c.month, c.day, c.hour, c.minute,
                c.second);
}

}  // namespace sodam
