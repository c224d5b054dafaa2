#include "sim/scenario.h"

#include <array>
#include <charconv>

#include "support/numeric.h"
#include "support/text.h"
#include "support/utf8.h"

namespace sodam {

namespace {

using Field = ScenarioChange::Field;

enum class Kind { flag, number, word, choice, name };

struct FieldRule {
  std::string_view name;
  Field field;
  Kind kind;
  double low = 0;
  double high = 0;
};

// The fields a scenario may set, with the values that make sense for a
// person at a laptop.
constexpr std::array fieldRules{
    FieldRule{"present", Field::present, Kind::flag},
    FieldRule{"forward", Field::forward, Kind::number, -5, 20},
    FieldRule{"drop", Field::drop, Kind::number, -5, 15},
    FieldRule{"pitch", Field::pitch, Kind::number, -45, 60},
    FieldRule{"roll", Field::roll, Kind::number, -45, 45},
    FieldRule{"yaw", Field::yaw, Kind::number, -90, 90},
    FieldRule{"shoulder", Field::shoulder, Kind::number, -30, 30},
    FieldRule{"lean", Field::lean, Kind::number, -20, 20},
    FieldRule{"distance", Field::distance, Kind::number, 25, 150},
    FieldRule{"lid", Field::lid, Kind::number, 0, 180},
    FieldRule{"lock", Field::lock, Kind::word},
    FieldRule{"unlock", Field::unlock, Kind::word},
    FieldRule{"sleep", Field::sleep, Kind::word},
    FieldRule{"wake", Field::wake, Kind::word},
    FieldRule{"display-off", Field::displayOff, Kind::word},
    FieldRule{"display-on", Field::displayOn, Kind::word},
    FieldRule{"battery", Field::battery, Kind::number, 0, 100},
    FieldRule{"power", Field::power, Kind::flag},
    FieldRule{"lowpower", Field::lowPower, Kind::flag},
    FieldRule{"idle", Field::idle, Kind::number, 0, 86400},
    FieldRule{"check", Field::check, Kind::word},
    FieldRule{"stretch", Field::stretch, Kind::word},
    FieldRule{"nudge", Field::nudge, Kind::flag},
    FieldRule{"breathe", Field::breathe, Kind::word},
    FieldRule{"focus", Field::focus, Kind::choice},
    FieldRule{"habit", Field::habit, Kind::choice},
    FieldRule{"hands", Field::hands, Kind::choice},
    FieldRule{"doze", Field::doze, Kind::flag},
    FieldRule{"camera", Field::camera, Kind::name},
};

// The names a choice field takes; a name's value is its position.
struct Choices {
  Field field;
  std::array<std::string_view, 6> names;
};
constexpr std::array fieldChoices{
    Choices{Field::focus, {"laptop", "watch"}},
    Choices{Field::habit, {"phone", "drowsy", "chinRest", "mouth", "away"}},
    Choices{Field::hands, {"lap", "desk", "phone", "chin", "mouth"}},
};

const Choices& choicesOf(Field field) {
  for (const auto& choices : fieldChoices) {
    if (choices.field == field) return choices;
  }
  return fieldChoices.front();
}

std::optional<double> parseChoice(Field field, std::string_view text) {
  const auto& names = choicesOf(field).names;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!names[i].empty() && names[i] == text) return static_cast<double>(i);
  }
  return std::nullopt;
}

// "a, b or c"
std::string choiceList(Field field) {
  std::vector<std::string_view> names;
  for (auto name : choicesOf(field).names) {
    if (!name.empty()) names.push_back(name);
  }
  std::string list;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) list += i + 1 == names.size() ? " or " : ", ";
    list += names[i];
  }
  return list;
}

const FieldRule* findField(std::string_view name) {
  for (const auto& rule : fieldRules) {
    if (rule.name == name) return &rule;
  }
  return nullptr;
}

std::optional<double> parseFlag(Field field, std::string_view text) {
  if (field == Field::power) {
    if (text == "battery") return 1;
    if (text == "mains") return 0;
    return std::nullopt;
  }
  if (text == "yes") return 1;
  if (text == "no") return 0;
  return std::nullopt;
}

// "HH:MM" or "HH:MM:SS" as seconds after midnight.
std::optional<double> parseTime(std::string_view text) {
  int parts[3] = {0, 0, 0};
  int count = 0;
  std::size_t at = 0;
  while (at <= text.size()) {
    // HH:MM:SS is the longest; "09:00:00:extra" is no time.
    if (count == 3) return std::nullopt;
    const auto colon = text.find(':', at);
    const auto piece = text.substr(at, colon == std::string_view::npos ? colon : colon - at);
    auto [end, error] = std::from_chars(piece.data(), piece.data() + piece.size(), parts[count]);
    if (piece.empty() || error != std::errc() || end != piece.data() + piece.size()) {
      return std::nullopt;
    }
    ++count;
    if (colon == std::string_view::npos) break;
    at = colon + 1;
  }
  const bool shaped = count >= 2 && at <= text.size();
  if (!shaped || parts[0] < 0 || parts[0] > 24 || parts[1] < 0 || parts[1] > 59 || parts[2] < 0 ||
      parts[2] > 59) {
    return std::nullopt;
  }
  const double seconds = parts[0] * 3600.0 + parts[1] * 60.0 + parts[2];
  if (seconds > 24 * 3600.0) return std::nullopt;
  return seconds;
}

std::vector<std::string_view> words(std::string_view line) {
  std::vector<std::string_view> result;
  std::size_t at = 0;
  while (at < line.size()) {
    while (at < line.size() && (line[at] == ' ' || line[at] == '\t' || line[at] == '\r'))
      ++at;
    std::size_t end = at;
    while (end < line.size() && line[end] != ' ' && line[end] != '\t' && line[end] != '\r')
      ++end;
    if (end > at) result.push_back(line.substr(at, end - at));
    at = end;
  }
  return result;
}

class Reader {
 public:
  explicit Reader(std::string name) { scenario_.name = std::move(name); }

  Scenario::Parsed read(std::string_view text) {
    // Editors on some systems begin UTF-8 text with a byte order mark.
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    int number = 0;
    std::size_t at = 0;
    while (at <= text.size()) {
      const auto newline = text.find('\n', at);
      auto line = text.substr(at, newline == std::string_view::npos ? newline : newline - at);
      ++number;
      if (const auto hash = line.find('#'); hash != std::string_view::npos)
        line = line.substr(0, hash);
      if (!readLine(words(line), number)) return {std::nullopt, error_};
      if (newline == std::string_view::npos) break;
      at = newline + 1;
    }
    if (scenario_.days == 1 && scenario_.endSeconds <= scenario_.startSeconds) {
      return {std::nullopt, "the scenario must end after it starts"};
    }
    const auto& events = scenario_.events;
    if (events.empty()) {
      return {std::nullopt,
              "nothing happens: a scenario needs at least one timed line, such as "
              "\"09:00 present=yes\""};
    }
    const bool lastDay = events.back().day == scenario_.days - 1;
    if (lastDay && events.back().atSeconds > scenario_.endSeconds) {
      return {std::nullopt,
              format("line %d: the event comes after the end", scenario_.events.back().line)};
    }
    return {std::move(scenario_), {}};
  }

 private:
  bool fail(int line, const std::string& what) {
    error_ = format("line %d: %s", line, what.c_str());
    return false;
  }

  bool readLine(const std::vector<std::string_view>& parts, int line) {
    if (parts.empty()) return true;
    const auto head = parts.front();
    if (head == "start" || head == "end") return readBound(parts, line);
    if (head == "mode") return readMode(parts, line);
    if (head == "fresh" || head == "day") {
      if (parts.size() != 1) {
        return fail(line, format("\"%s\" takes nothing after it", std::string(head).c_str()));
      }
      if (head == "fresh") scenario_.fresh = true;
      if (head == "day") ++scenario_.days;
      return true;
    }
    return readEvent(parts, line);
  }

  bool readBound(const std::vector<std::string_view>& parts, int line) {
    const std::string head(parts.front());
    if (parts.size() != 2) return fail(line, format("\"%s\" takes one time, HH:MM", head.c_str()));
    auto time = parseTime(parts[1]);
    if (!time) {
      return fail(line, format("\"%s\" is not a time, HH:MM", utf8::printable(parts[1]).c_str()));
    }
    (head == "start" ? scenario_.startSeconds : scenario_.endSeconds) = *time;
    return true;
  }

  bool readMode(const std::vector<std::string_view>& parts, int line) {
    if (parts.size() != 2 || (parts[1] != "live" && parts[1] != "interval")) {
      return fail(line, "\"mode\" is live or interval");
    }
    scenario_.live = parts[1] == "live";
    return true;
  }

  bool readEvent(const std::vector<std::string_view>& parts, int line) {
    auto time = parseTime(parts.front());
    if (!time) {
      return fail(line, format("\"%s\" is neither a time nor a setting",
                               utf8::printable(parts.front()).c_str()));
    }
    const int day = scenario_.days - 1;
    const auto& events = scenario_.events;
    const bool sameDay = !events.empty() && events.back().day == day;
    if (sameDay && *time < events.back().atSeconds) return fail(line, "the time goes back");
    ScenarioEvent event{*time, day, line, {}};
    for (std::size_t i = 1; i < parts.size(); ++i) {
      auto change = readChange(parts[i], line);
      if (!change) return false;
      event.changes.push_back(*change);
    }
    if (event.changes.empty()) return fail(line, "nothing happens at this time");
    scenario_.events.push_back(std::move(event));
    return true;
  }

  std::optional<ScenarioChange> readChange(std::string_view part, int line) {
    const auto equals = part.find('=');
    const auto name = part.substr(0, equals);
    const FieldRule* rule = findField(name);
    if (!rule) {
      fail(line, format("unknown field \"%s\"", utf8::printable(name).c_str()));
      return std::nullopt;
    }
    if (rule->kind == Kind::word) {
      if (equals != std::string_view::npos) {
        fail(line, format("\"%s\" takes no value", std::string(name).c_str()));
        return std::nullopt;
      }
      return ScenarioChange{rule->field, 0};
    }
    if (equals == std::string_view::npos) {
      fail(line, format("field \"%s\" needs a value", std::string(name).c_str()));
      return std::nullopt;
    }
    return readValue(*rule, part.substr(equals + 1), line);
  }

  std::optional<ScenarioChange> readValue(const FieldRule& rule, std::string_view text, int line) {
    const std::string name(rule.name);
    if (rule.kind == Kind::choice) {
      auto choice = parseChoice(rule.field, text);
      if (!choice) {
        fail(line, format("field \"%s\" is %s", name.c_str(), choiceList(rule.field).c_str()));
        return std::nullopt;
      }
      return ScenarioChange{rule.field, *choice};
    }
    if (rule.kind == Kind::name) {
      if (text.empty()) {
        fail(line, format("field \"%s\" is a program's name or path, or off", name.c_str()));
        return std::nullopt;
      }
      return ScenarioChange{rule.field, 0, text == "off" ? std::string() : std::string(text)};
    }
    if (rule.kind == Kind::flag) {
      auto flag = parseFlag(rule.field, text);
      if (!flag) {
        fail(line, format("field \"%s\" is %s", name.c_str(),
                          rule.field == Field::power ? "mains or battery" : "yes or no"));
        return std::nullopt;
      }
      return ScenarioChange{rule.field, *flag};
    }
    auto number = parseDecimal(text);
    if (!number || *number < rule.low || *number > rule.high) {
      fail(line, format("field \"%s\" must be a number from %g to %g", name.c_str(), rule.low,
                        rule.high));
      return std::nullopt;
    }
    return ScenarioChange{rule.field, *number};
  }

  Scenario scenario_;
  std::string error_;
};

}  // namespace

Scenario::Parsed Scenario::parse(std::string_view text, std::string name) {
  return Reader(std::move(name)).read(text);
}

}  // namespace sodam
