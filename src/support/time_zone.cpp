#include "support/time_zone.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "support/calendar.h"
#include "support/text.h"

namespace sodam {

namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t secondsPerHour = 3600;

std::int64_t floorDiv(std::int64_t value, std::int64_t divisor) {
  const auto quotient = value / divisor;
  return (value % divisor != 0 && (value < 0) != (divisor < 0)) ? quotient - 1 : quotient;
}

// ---- POSIX TZ rules ("EST5EDT,M3.2.0,M11.1.0") ----

// The day of a clock change, in one of the three written forms.
struct ChangeDay {
  enum class Form { julianNoLeap, zeroBased, monthWeekDay };
  Form form = Form::monthWeekDay;
  int number = 0;  // Jn: 1...365 without Feb 29; n: 0...365
  int month = 1;
  int week = 1;  // 5 means the last such weekday of the month
  int weekday = 0;

  std::int64_t daysIn(std::int64_t year) const {
    const auto jan1 = daysFromCivil(year, 1, 1);
    switch (form) {
      case Form::julianNoLeap:
        // February 29 is never counted, so later days move by one in a leap year.
        return jan1 + number - 1 + ((isLeapYear(year) && number >= 60) ? 1 : 0);
      case Form::zeroBased:
        return jan1 + number;
      case Form::monthWeekDay:
        break;
    }
    const auto first = daysFromCivil(year, month, 1);
    int day = 1 + (weekday - weekdayFromDays(first) + 7) % 7 + (week - 1) * 7;
    while (day > daysInMonth(year, month))
      day -= 7;
    return first + day - 1;
  }
};

struct Change {
  ChangeDay day;
  int localSeconds = 2 * 3600;  // wall-clock time of the change on that day
};

struct Daylight {
  int offset = 0;  // seconds east of UTC
  Change start;    // told in standard time
  Change end;      // told in daylight time
};

struct PosixRule {
  int standardOffset = 0;
  std::optional<Daylight> daylight;

  int offsetAt(std::int64_t unixSeconds) const {
    if (!daylight) return standardOffset;
    // Changes of three years around the moment, so a change moved across a
    // year boundary by its time of day is still in view. The latest change at
    // or before the moment decides; on a tie the later year's change wins, so
    // a year that ends daylight time as the next begins it stays in daylight.
    const auto year = civilFromDays(floorDiv(unixSeconds + standardOffset, secondsPerDay)).year;
    std::optional<std::int64_t> latest, earliest;
    bool latestToDaylight = false, earliestToDaylight = false;
    for (std::int64_t y = year - 1; y <= year + 1; ++y) {
      for (const bool toDaylight : {true, false}) {
        const auto at = toDaylight ? changeInstant(daylight->start, y, standardOffset)
                                   : changeInstant(daylight->end, y, daylight->offset);
        if (at <= unixSeconds && (!latest || at >= *latest)) {
          latest = at;
          latestToDaylight = toDaylight;
        }
        if (!earliest || at < *earliest) {
          earliest = at;
          earliestToDaylight = toDaylight;
        }
      }
    }
    // Before every change in view, the state is the one the first change ends.
    const bool inDaylight = latest ? latestToDaylight : !earliestToDaylight;
    return inDaylight ? daylight->offset : standardOffset;
  }

 private:
  static std::int64_t changeInstant(const Change& change, std::int64_t year, int offsetBefore) {
    return change.day.daysIn(year) * secondsPerDay + change.localSeconds - offsetBefore;
  }
};

class PosixParser {
 public:
  explicit PosixParser(std::string_view text) : text_(text) {}

  std::optional<PosixRule> parse() {
    if (!abbreviation()) return std::nullopt;
    const auto standardWest = duration(24);
    if (!standardWest) return std::nullopt;
    PosixRule rule{-*standardWest, std::nullopt};
    if (atEnd()) return rule;
    if (!abbreviation()) return std::nullopt;
    Daylight daylight{rule.standardOffset + 3600, usStart(), usEnd()};
    if (!atEnd() && peek() != ',') {
      const auto daylightWest = duration(24);
      if (!daylightWest) return std::nullopt;
      daylight.offset = -*daylightWest;
    }
    if (!atEnd()) {
      auto start = take(',') ? change() : std::nullopt;
      auto end = start && take(',') ? change() : std::nullopt;
      if (!end) return std::nullopt;
      daylight.start = *start;
      daylight.end = *end;
    }
    if (!atEnd()) return std::nullopt;
    rule.daylight = daylight;
    return rule;
  }

 private:
  // A zone with daylight time but no written changes follows the
  // United States rules, as the common C libraries do.
  static Change usStart() { return {{ChangeDay::Form::monthWeekDay, 0, 3, 2, 0}, 2 * 3600}; }
  static Change usEnd() { return {{ChangeDay::Form::monthWeekDay, 0, 11, 1, 0}, 2 * 3600}; }

  bool atEnd() const { return at_ >= text_.size(); }
  char peek() const { return atEnd() ? '\0' : text_[at_]; }
  bool take(char c) {
    if (peek() != c) return false;
    ++at_;
    return true;
  }
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }
  static bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

  // "EST", or "<+09>" where the name holds digits and signs.
  bool abbreviation() {
    const auto begin = at_;
    if (take('<')) {
      while (!atEnd() && (isLetter(peek()) || isDigit(peek()) || peek() == '+' || peek() == '-'))
        ++at_;
      return at_ > begin + 1 && take('>');
    }
    while (!atEnd() && isLetter(peek()))
      ++at_;
    return at_ - begin >= 3;
  }

  std::optional<int> number(std::size_t maxDigits, int low, int high) {
    const auto begin = at_;
    int value = 0;
    while (!atEnd() && isDigit(peek()) && at_ - begin < maxDigits)
      value = value * 10 + (text_[at_++] - '0');
    if (at_ == begin || value < low || value > high) return std::nullopt;
    return value;
  }

  // [+-]hh[:mm[:ss]] in seconds, positive west of Greenwich for offsets.
  std::optional<int> duration(int maxHours) {
    int sign = 1;
    if (take('-')) {
      sign = -1;
    } else {
      take('+');
    }
    const auto hours = number(3, 0, maxHours);
    if (!hours) return std::nullopt;
    int seconds = *hours * 3600;
    if (take(':')) {
      const auto minutes = number(2, 0, 59);
      if (!minutes) return std::nullopt;
      seconds += *minutes * 60;
      if (take(':')) {
        const auto rest = number(2, 0, 59);
        if (!rest) return std::nullopt;
        seconds += *rest;
      }
    }
    return sign * seconds;
  }

  std::optional<ChangeDay> changeDay() {
    using Form = ChangeDay::Form;
    if (take('J')) {
      const auto n = number(3, 1, 365);
      if (!n) return std::nullopt;
      return ChangeDay{Form::julianNoLeap, *n};
    }
    if (take('M')) {
      const auto month = number(2, 1, 12);
      const auto week = month && take('.') ? number(1, 1, 5) : std::nullopt;
      const auto weekday = week && take('.') ? number(1, 0, 6) : std::nullopt;
      if (!weekday) return std::nullopt;
      return ChangeDay{Form::monthWeekDay, 0, *month, *week, *weekday};
    }
    const auto n = number(3, 0, 365);
    if (!n) return std::nullopt;
    return ChangeDay{Form::zeroBased, *n};
  }

  // The time of day may run past 24 hours or below zero (up to a week either way).
  std::optional<Change> change() {
    const auto day = changeDay();
    if (!day) return std::nullopt;
    Change result{*day, 2 * 3600};
    if (take('/')) {
      const auto time = duration(167);
      if (!time) return std::nullopt;
      result.localSeconds = *time;
    }
    return result;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

// ---- The zone itself ----

struct TimeZone::Rules {
  std::string name;
  std::vector<std::int64_t> transitions;        // Unix seconds, ascending
  std::vector<std::uint8_t> transitionOffsets;  // index into offsets, one per transition
  std::vector<int> offsets;                     // never empty
  std::optional<PosixRule> tail;                // after the last transition

  int offsetAt(std::int64_t unixSeconds) const {
    if (transitions.empty() || unixSeconds >= transitions.back()) {
      if (tail) return tail->offsetAt(unixSeconds);
      return transitions.empty() ? offsets.front() : offsets[transitionOffsets.back()];
    }
    // Before the first change the zone keeps its first local time type.
    if (unixSeconds < transitions.front()) return offsets.front();
    const auto next = std::upper_bound(transitions.begin(), transitions.end(), unixSeconds);
    const auto index = static_cast<std::size_t>(std::distance(transitions.begin(), next) - 1);
    return offsets[transitionOffsets[index]];
  }
};

namespace {

// ---- TZif files ----

class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : bytes_(bytes) {}

  bool has(std::uint64_t count) const { return count <= bytes_.size() - at_; }
  std::size_t position() const { return at_; }
  std::string_view take(std::size_t count) {
    const auto part = bytes_.substr(at_, count);
    at_ += count;
    return part;
  }
  std::uint64_t unsignedBigEndian(std::size_t width) {
    std::uint64_t value = 0;
    for (const char byte : take(width))
      value = (value << 8) | static_cast<unsigned char>(byte);
    return value;
  }
  std::int64_t signed64() { return static_cast<std::int64_t>(unsignedBigEndian(8)); }
  std::int32_t signed32() {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(unsignedBigEndian(4)));
  }
  std::string_view rest() const { return bytes_.substr(at_); }

 private:
  std::string_view bytes_;
  std::size_t at_ = 0;
};

struct TzifHeader {
  char version = 0;
  std::uint64_t utcIndicators = 0, standardIndicators = 0, leapSeconds = 0;
  std::uint64_t transitions = 0, types = 0, designationBytes = 0;

  std::uint64_t blockSize(std::uint64_t timeSize) const {
    return transitions * timeSize + transitions + types * 6 + designationBytes +
           leapSeconds * (timeSize + 4) + standardIndicators + utcIndicators;
  }
};

std::optional<TzifHeader> readHeader(ByteReader& reader) {
  if (!reader.has(44) || reader.take(4) != "TZif") return std::nullopt;
  TzifHeader header;
  header.version = reader.take(1)[0];
  reader.take(15);
  header.utcIndicators = reader.unsignedBigEndian(4);
  header.standardIndicators = reader.unsignedBigEndian(4);
  header.leapSeconds = reader.unsignedBigEndian(4);
  header.transitions = reader.unsignedBigEndian(4);
  header.types = reader.unsignedBigEndian(4);
  header.designationBytes = reader.unsignedBigEndian(4);
  const bool indicatorsFit =
      (header.utcIndicators == 0 || header.utcIndicators == header.types) &&
      (header.standardIndicators == 0 || header.standardIndicators == header.types);
  if (header.types == 0 || header.types > 256 || !indicatorsFit) return std::nullopt;
  return header;
}

// Offsets beyond about a day either way are damage, not geography.
bool plausibleOffset(std::int32_t offset) {
  return offset > -25 * secondsPerHour && offset < 26 * secondsPerHour;
}

// Reads one data block into the rules; leap seconds and the
// standard/UT indicators are not needed to tell local time.
bool readBlock(ByteReader& reader, const TzifHeader& header, std::size_t timeSize,
               TimeZone::Rules& rules) {
  if (!reader.has(header.blockSize(timeSize))) return false;
  rules.transitions.clear();
  for (std::uint64_t i = 0; i < header.transitions; ++i) {
    const auto at = timeSize == 8 ? reader.signed64() : std::int64_t{reader.signed32()};
    if (!rules.transitions.empty() && at <= rules.transitions.back()) return false;
    rules.transitions.push_back(at);
  }
  rules.transitionOffsets.clear();
  for (std::uint64_t i = 0; i < header.transitions; ++i) {
    const auto index = static_cast<std::uint8_t>(reader.take(1)[0]);
    if (index >= header.types) return false;
    rules.transitionOffsets.push_back(index);
  }
  rules.offsets.clear();
  for (std::uint64_t i = 0; i < header.types; ++i) {
    const auto offset = reader.signed32();
    reader.take(2);  // daylight flag and designation index
    if (!plausibleOffset(offset)) return false;
    rules.offsets.push_back(offset);
  }
  reader.take(static_cast<std::size_t>(header.designationBytes +
                                       header.leapSeconds * (timeSize + 4) +
                                       header.standardIndicators + header.utcIndicators));
  return true;
}

// The newline-framed POSIX rule after the 64-bit block; empty means none.
bool readFooter(ByteReader& reader, TimeZone::Rules& rules) {
  const auto rest = reader.rest();
  if (rest.empty() || rest.front() != '\n') return false;
  const auto close = rest.find('\n', 1);
  if (close == std::string_view::npos) return false;
  const auto text = rest.substr(1, close - 1);
  if (text.empty()) return true;
  rules.tail = PosixParser(text).parse();
  return rules.tail.has_value();
}

std::string zoneNameFromPath(const std::string& path) {
  const std::string marker = "zoneinfo/";
  const auto at = path.rfind(marker);
  return at == std::string::npos ? path : path.substr(at + marker.size());
}

std::string fixedName(int secondsEast) {
  if (secondsEast == 0) return "UTC";
  const int magnitude = secondsEast < 0 ? -secondsEast : secondsEast;
  const char sign = secondsEast < 0 ? '-' : '+';
  const int hours = magnitude / 3600, minutes = magnitude / 60 % 60, seconds = magnitude % 60;
  return seconds == 0 ? format("UTC%c%02d:%02d", sign, hours, minutes)
                      : format("UTC%c%02d:%02d:%02d", sign, hours, minutes, seconds);
}

}  // namespace

TimeZone TimeZone::utc() {
  return fixed(0);
}

TimeZone TimeZone::fixed(int secondsEastOfUtc) {
  auto rules = std::make_shared<Rules>();
  rules->name = fixedName(secondsEastOfUtc);
  rules->offsets = {secondsEastOfUtc};
  return TimeZone(std::move(rules));
}

std::optional<TimeZone> TimeZone::fromPosixRule(std::string_view rule) {
  auto parsed = PosixParser(rule).parse();
  if (!parsed) return std::nullopt;
  auto rules = std::make_shared<Rules>();
  rules->name = std::string(rule);
  rules->offsets = {parsed->standardOffset};
  rules->tail = std::move(parsed);
  return TimeZone(std::move(rules));
}

std::optional<TimeZone> TimeZone::fromTzif(std::string_view bytes, std::string name) {
  ByteReader reader(bytes);
  const auto header = readHeader(reader);
  if (!header) return std::nullopt;
  auto rules = std::make_shared<Rules>();
  rules->name = std::move(name);
  if (header->version == '\0') {
    if (!readBlock(reader, *header, 4, *rules)) return std::nullopt;
    return TimeZone(std::move(rules));
  }
  // Version 2 and later repeat the data with 64-bit times and add a rule
  // for the years after the last transition; the 32-bit block is skipped.
  if (!reader.has(header->blockSize(4))) return std::nullopt;
  reader.take(static_cast<std::size_t>(header->blockSize(4)));
  const auto wideHeader = readHeader(reader);
  if (!wideHeader || !readBlock(reader, *wideHeader, 8, *rules) || !readFooter(reader, *rules))
    return std::nullopt;
  return TimeZone(std::move(rules));
}

std::optional<TimeZone> TimeZone::load(const std::string& path, std::string name) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream bytes;
  bytes << file.rdbuf();
  if (file.bad()) return std::nullopt;
  return fromTzif(bytes.str(), name.empty() ? zoneNameFromPath(path) : std::move(name));
}

int TimeZone::offsetAt(Date date) const {
  return rules_->offsetAt(wholeUnixSeconds(date));
}

const std::string& TimeZone::name() const {
  return rules_->name;
}

}  // namespace sodam
