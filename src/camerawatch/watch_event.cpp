#include "camerawatch/watch_event.h"

#include <cmath>

#include "support/json.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

constexpr WatchEvent::Kind kinds[] = {WatchEvent::Kind::cameraOn, WatchEvent::Kind::request,
                                      WatchEvent::Kind::check};

std::optional<WatchEvent::Kind> kindNamed(std::string_view name) {
  for (auto kind : kinds) {
    if (kindName(kind) == name) return kind;
  }
  return std::nullopt;
}

std::string duration(double seconds) {
  const long long whole = roundedInt(seconds);
  if (whole >= 60) return format("%lld분 %lld초", whole / 60, whole % 60);
  return format("%lld초", whole);
}

std::string what(const WatchEvent& event) {
  switch (event.kind) {
    case WatchEvent::Kind::cameraOn:
      if (event.end && *event.end < event.time) return "카메라 켜짐 · 끝난 시각 모름";
      if (!event.end) return "카메라 켜짐 · 지금 사용 중";
      return "카메라 켜짐 · " + duration(*event.end - event.time) + " 동안";
    case WatchEvent::Kind::request:
      if (!event.allowed) return "카메라 사용 요청";
      return *event.allowed ? "카메라 사용 요청 · 허용됨" : "카메라 사용 요청 · 거부됨";
    case WatchEvent::Kind::check:
      return "카메라 권한 확인";
  }
  return {};
}

}  // namespace

std::string_view kindName(WatchEvent::Kind kind) {
  switch (kind) {
    case WatchEvent::Kind::cameraOn:
      return "cameraOn";
    case WatchEvent::Kind::request:
      return "request";
    case WatchEvent::Kind::check:
      return "check";
  }
  return "cameraOn";
}

std::string WatchEvent::summary() const {
  std::string line = what(*this);
  if (count >= 2) line += format(" · %d회", count);
  if (suspicious) line += " · 주의: " + *suspicious;
  return line;
}

nlohmann::json toJson(const WatchEvent& event) {
  nlohmann::json out = nlohmann::json::object();
  jsonPut(out, "id", event.id);
  jsonPut(out, "kind", std::string(kindName(event.kind)));
  jsonPut(out, "time", event.time);
  jsonPut(out, "end", event.end);
  jsonPut(out, "app", event.app);
  jsonPut(out, "path", event.path);
  jsonPut(out, "allowed", event.allowed);
  jsonPut(out, "count", event.count);
  jsonPut(out, "suspicious", event.suspicious);
  return out;
}

std::optional<WatchEvent> watchEventFromJson(const nlohmann::json& value) {
  auto id = jsonRequired<std::string>(value, "id");
  const auto kind = jsonRequired<std::string>(value, "kind");
  const auto time = jsonRequired<Date>(value, "time");
  auto app = jsonRequired<std::string>(value, "app");
  auto path = jsonRequired<std::string>(value, "path");
  const auto count = jsonRequired<int>(value, "count");
  if (!id || !kind || !time || !app || !path || !count || !kindNamed(*kind)) return std::nullopt;
  WatchEvent event;
  if (!jsonOptional(value, "end", event.end) || !jsonOptional(value, "allowed", event.allowed) ||
      !jsonOptional(value, "suspicious", event.suspicious)) {
    return std::nullopt;
  }
  event.id = std::move(*id);
  event.kind = *kindNamed(*kind);
  event.time = *time;
  event.app = std::move(*app);
  event.path = std::move(*path);
  event.count = *count;
  return event;
}

std::vector<WatchEvent> watchEventsFromJson(const nlohmann::json& value) {
  std::vector<WatchEvent> events;
  if (!value.is_array()) return events;
  for (const auto& element : value) {
    if (auto event = watchEventFromJson(element)) events.push_back(std::move(*event));
  }
  return events;
}

}  // namespace sodam
