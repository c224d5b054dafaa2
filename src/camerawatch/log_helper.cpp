#include "camerawatch/log_helper.h"

#include <istream>
#include <ostream>

#include "support/numeric.h"

namespace sodam {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

std::vector<std::string_view> words(std::string_view line) {
  std::vector<std::string_view> result;
  std::size_t at = 0;
  while (at < line.size()) {
    while (at < line.size() && isBlank(line[at]))
      ++at;
    std::size_t end = at;
    while (end < line.size() && !isBlank(line[end]))
      ++end;
    if (end > at) result.push_back(line.substr(at, end - at));
    at = end;
  }
  return result;
}

template <class Record>
void appendEncoded(std::vector<std::string>& lines, const std::vector<Record>& records) {
  for (const auto& record : records) {
    // A record that can't be encoded is left out.
    if (auto line = encodeLine(record)) lines.push_back(std::move(*line));
  }
}

}  // namespace

std::optional<LogHelper::Command> LogHelper::parse(std::string_view line) {
  using Kind = Command::Kind;
  const auto parts = words(line);
  if (parts.empty() || parts.front().size() != 1) return std::nullopt;
  const char letter = parts.front().front();
  if (letter == 'S') {
    if (parts.size() != 2) return std::nullopt;
    Command command{Kind::stream};
    command.on = parts[1] == "1";
    return command;
  }
  Kind kind;
  if (letter == 'Q') {
    kind = Kind::requests;
  } else if (letter == 'C') {
    kind = Kind::clients;
  } else if (letter == 'I') {
    kind = Kind::indicator;
  } else {
    return std::nullopt;
  }
  if (parts.size() != 3) return std::nullopt;
  const auto from = parseDecimal(parts[1]);
  const auto to = parseDecimal(parts[2]);
  if (!from || !to || !(*from < *to)) return std::nullopt;
  return Command{kind, *from, *to, false};
}

std::vector<std::string> LogHelper::answerLines(std::string_view line) {
  using Kind = Command::Kind;
  const auto command = parse(line);
  std::vector<std::string> lines;
  if (!command) return lines;
  switch (command->kind) {
    case Kind::clients:
      appendEncoded(lines, sources_.clients(command->from, command->to));
      [[fallthrough]];
    case Kind::requests:
      appendEncoded(lines, sources_.requests(command->from, command->to));
      break;
    case Kind::indicator:
      if (const auto update = sources_.indicator(command->from, command->to))
        appendEncoded(lines, std::vector{*update});
      break;
    case Kind::stream:
      if (command->on) {
        sources_.startStream([this](const IndicatorUpdate& update) {
          if (auto encoded = encodeLine(update)) write({streamMark + *encoded});
        });
      } else {
        sources_.stopStream();
      }
      break;
  }
  return lines;
}

void LogHelper::answer(std::string_view line) {
  auto lines = answerLines(line);
  lines.emplace_back(terminator);
  write(lines);
}

int LogHelper::run(std::istream& in) {
  for (std::string line; std::getline(in, line);)
    answer(line);
  sources_.stopStream();
  return 0;
}

void LogHelper::write(const std::vector<std::string>& lines) {
  std::lock_guard lock(output_);
  for (const auto& line : lines)
    out_ << line << '\n';
  out_.flush();
}

}  // namespace sodam
