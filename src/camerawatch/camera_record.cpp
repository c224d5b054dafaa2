#include "camerawatch/camera_record.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "support/json.h"

namespace sodam {

namespace {

using nlohmann::json;

std::string dumpLine(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<CameraUser> decodeUser(const json& value) {
  auto name = jsonRequired<std::string>(value, "name");
  auto id = jsonRequired<std::string>(value, "id");
  if (!name || !id) return std::nullopt;
  return CameraUser{std::move(*name), std::move(*id)};
}

}  // namespace

std::optional<std::string> encodeLine(const CameraRecord& record) {
  if (!std::isfinite(record.time)) return std::nullopt;
  json out = json::object();
  jsonPut(out, "client", record.client);
  jsonPut(out, "time", record.time);
  jsonPut(out, "key", record.key);
  jsonPut(out, "identifier", record.identifier);
  jsonPut(out, "path", record.path);
  jsonPut(out, "pid", record.pid);
  jsonPut(out, "actor", record.actor);
  jsonPut(out, "preflight", record.preflight);
  jsonPut(out, "allowed", record.allowed);
  return dumpLine(out);
}

std::optional<std::string> encodeLine(const IndicatorUpdate& update) {
  if (!std::isfinite(update.time)) return std::nullopt;
  json cams = json::array();
  for (const auto& user : update.cams)
    cams.push_back(json{{"name", user.name}, {"id", user.id}});
  return dumpLine(json{{"time", update.time}, {"cams", std::move(cams)}});
}

std::optional<CameraRecord> decodeCameraRecord(std::string_view line) {
  const auto parsed = parseJson(line);
  if (!parsed || !parsed->is_object()) return std::nullopt;
  const json& in = *parsed;
  CameraRecord record;
  const auto client = jsonRequired<bool>(in, "client");
  const auto time = jsonRequired<double>(in, "time");
  auto key = jsonRequired<std::string>(in, "key");
  auto identifier = jsonRequired<std::string>(in, "identifier");
  auto path = jsonRequired<std::string>(in, "path");
  const auto pid = jsonRequired<std::int64_t>(in, "pid");
  const auto preflight = jsonRequired<bool>(in, "preflight");
  if (!client || !time || !key || !identifier || !path || !pid || !preflight) return std::nullopt;
  if (!jsonOptional(in, "actor", record.actor) || !jsonOptional(in, "allowed", record.allowed))
    return std::nullopt;
  record.client = *client;
  record.time = *time;
  record.key = std::move(*key);
  record.identifier = std::move(*identifier);
  record.path = std::move(*path);
  record.pid = *pid;
  record.preflight = *preflight;
  return record;
}

std::optional<IndicatorUpdate> decodeIndicatorUpdate(std::string_view line) {
  const auto parsed = parseJson(line);
  if (!parsed || !parsed->is_object()) return std::nullopt;
  const auto time = jsonRequired<double>(*parsed, "time");
  const json& cams = jsonField(*parsed, "cams");
  if (!time || !cams.is_array()) return std::nullopt;
  IndicatorUpdate update{*time, {}};
  for (const auto& value : cams) {
    auto user = decodeUser(value);
    if (!user) return std::nullopt;
    update.cams.push_back(std::move(*user));
  }
  return update;
}

std::string decimalSeconds(double seconds) {
  char text[64];
  if (std::isfinite(seconds) && std::fabs(seconds) < 1e15) {
    for (int digits = 0; digits <= 17; ++digits) {
      std::snprintf(text, sizeof text, "%.*f", digits, seconds);
      if (std::strtod(text, nullptr) == seconds) return text;
    }
  }
  std::snprintf(text, sizeof text, "%.17g", seconds);
  return text;
}

}  // namespace sodam
