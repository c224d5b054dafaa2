#include "camerawatch/log_messages.h"

namespace sodam {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool isLineEnd(char c) {
  return c == '\n' || c == '\r';
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The longest run at `at` of characters for which `take` holds.
template <class Take>
std::string_view runAt(std::string_view text, std::size_t at, Take take) {
  std::size_t end = at;
  while (end < text.size() && take(text[end]))
    ++end;
  return text.substr(at, end - at);
}

// The run after the first occurrence of `label` whose run is not empty.
template <class Take>
std::optional<std::string> afterLabel(std::string_view text, std::string_view label, Take take) {
  for (auto at = text.find(label); at != std::string_view::npos; at = text.find(label, at + 1)) {
    const auto run = runAt(text, at + label.size(), take);
    if (!run.empty()) return std::string(run);
  }
  return std::nullopt;
}

// "binary_path=(.+)$": the rest of the text after a label, so long as it
// holds no line end.
std::optional<std::string> restAfterLabel(std::string_view text, std::string_view label) {
  for (auto at = text.find(label); at != std::string_view::npos; at = text.find(label, at + 1)) {
    const auto rest = text.substr(at + label.size());
    if (rest.empty()) continue;
    if (rest.find_first_of("\n\r") == std::string_view::npos) return std::string(rest);
  }
  return std::nullopt;
}

// The id of "({id})" with the opening parenthesis at `open`; its end, one
// past the closing parenthesis, or 0 when there is none there.
std::size_t idEnd(std::string_view text, std::size_t open) {
  const auto id = runAt(text, open + 1, [](char c) { return c != '(' && c != ')' && !isBlank(c); });
  const std::size_t close = open + 1 + id.size();
  if (id.empty() || close >= text.size() || text[close] != ')') return 0;
  return close + 1;
}

}  // namespace

std::optional<std::string> messageId(std::string_view message) {
  return afterLabel(message, "msgID=", [](char c) { return c != ',' && !isBlank(c); });
}

std::optional<std::string> authValue(std::string_view message) {
  return afterLabel(message, "authValue=", isDigit);
}

std::optional<bool> authAnswer(std::string_view message) {
  const auto value = authValue(message);
  if (!value) return std::nullopt;
  if (*value == "0") return false;
  if (*value == "2" || *value == "3") return true;
  return std::nullopt;
}

std::optional<LogParty> logParty(std::string_view message, std::string_view role) {
  const std::string opening = std::string(role) + "={TCCDProcess: ";
  const auto start = message.find(opening);
  if (start == std::string_view::npos) return std::nullopt;
  const auto bodyStart = start + opening.size();
  const auto close = message.find('}', bodyStart);
  if (close == std::string_view::npos) return std::nullopt;
  const auto body = message.substr(bodyStart, close - bodyStart);
  LogParty party;
  party.identifier = afterLabel(body, "identifier=", [](char c) { return c != ','; }).value_or("");
  if (const auto pid = afterLabel(body, "pid=", isDigit)) {
    // A run of digits too long for a process id is no process id.
    party.pid = pid->size() <= 18 ? std::stoll(*pid) : 0;
  }
  party.path = restAfterLabel(body, "binary_path=").value_or("");
  return party;
}

std::vector<CameraUser> cams(std::string_view message) {
  constexpr std::string_view marker = "[cam] ";
  std::vector<CameraUser> users;
  std::size_t from = 0;
  while (true) {
    const auto at = message.find(marker, from);
    if (at == std::string_view::npos) break;
    const std::size_t nameStart = at + marker.size();
    std::size_t k = nameStart + 1;
    std::size_t matchEnd = 0;
    for (; k + 1 < message.size(); ++k) {
      if (isLineEnd(message[k - 1])) break;
      if (message[k] != ' ' || message[k + 1] != '(') continue;
      matchEnd = idEnd(message, k + 1);
      if (matchEnd != 0) break;
    }
    if (matchEnd == 0) {
      // No later start before this line's end could match either: a name
      // from there would end at one of the places already tried.
      if (k + 1 >= message.size()) break;
      from = k;
      continue;
    }
    users.push_back(CameraUser{std::string(message.substr(nameStart, k - nameStart)),
                               std::string(message.substr(k + 2, matchEnd - 1 - (k + 2)))});
    from = matchEnd;
  }
  return users;
}

}  // namespace sodam
