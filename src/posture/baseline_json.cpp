#include <nlohmann/json.hpp>

#include "posture/baseline.h"
#include "support/json.h"

namespace sodam {

namespace {
nlohmann::json gazeJson(const Baseline::Gaze& gaze) {
  nlohmann::json json = nlohmann::json::object();
  jsonPut(json, "aperture", gaze.aperture);
  jsonPut(json, "pupilX", gaze.pupilX);
  jsonPut(json, "pupilY", gaze.pupilY);
  jsonPut(json, "turn", gaze.turn);
  return json;
}

nlohmann::json frameJson(const Baseline::Frame& frame) {
  nlohmann::json json = nlohmann::json::object();
  jsonPut(json, "eyeRay", frame.eyeRay);
  jsonPut(json, "distance", frame.distance);
  jsonPut(json, "neck", frame.neck);
  jsonPut(json, "torso", frame.torso);
  return json;
}

std::optional<Baseline::Gaze> gazeFrom(const nlohmann::json& json) {
  const auto aperture = jsonRequired<double>(json, "aperture");
  const auto turn = jsonRequired<double>(json, "turn");
  if (!aperture || !turn) return std::nullopt;
  Baseline::Gaze gaze;
  gaze.aperture = *aperture;
  gaze.turn = *turn;
  if (!jsonOptional(json, "pupilX", gaze.pupilX) || !jsonOptional(json, "pupilY", gaze.pupilY))
    return std::nullopt;
  return gaze;
}

std::optional<Baseline::Frame> frameFrom(const nlohmann::json& json) {
  const auto eyeRay = jsonRequired<double>(json, "eyeRay");
  const auto distance = jsonRequired<double>(json, "distance");
  if (!eyeRay || !distance) return std::nullopt;
  Baseline::Frame frame;
  frame.eyeRay = *eyeRay;
  frame.distance = *distance;
  if (!jsonOptional(json, "neck", frame.neck) || !jsonOptional(json, "torso", frame.torso))
    return std::nullopt;
  return frame;
}

// A nested optional record: absent when missing or null, unreadable when it
// is there but can't be decoded.
template <class Record, class Decode>
bool nestedOptional(const nlohmann::json& json, const char* key, std::optional<Record>& out,
                    Decode decode) {
  const auto& value = jsonField(json, key);
  out.reset();
  if (value.is_null()) return true;
  out = decode(value);
  return out.has_value();
}
}  // namespace

nlohmann::json Baseline::toJson() const {
  nlohmann::json json = nlohmann::json::object();
  jsonPut(json, "version", version);
  jsonPut(json, "eyeDistance", eyeDistance);
  jsonPut(json, "eyeHeight", eyeHeight);
  jsonPut(json, "eyeAngle", eyeAngle);
  jsonPut(json, "faceRatio", faceRatio);
  jsonPut(json, "faceElevation", faceElevation);
  jsonPut(json, "shoulderWidthCm", shoulderWidthCm);
  jsonPut(json, "depthGap", depthGap);
  jsonPut(json, "shoulderDepth", shoulderDepth);
  jsonPut(json, "neck", neck);
  jsonPut(json, "lateral", lateral);
  jsonPut(json, "shoulderAngle", shoulderAngle);
  jsonPut(json, "shoulderRay", shoulderRay);
  jsonPut(json, "pitch", pitch);
  jsonPut(json, "lid", lid);
  jsonPut(json, "learnedAt", learnedAt);
  if (gaze) json["gaze"] = gazeJson(*gaze);
  if (frame) json["frame"] = frameJson(*frame);
  return json;
}

std::optional<Baseline> Baseline::fromJson(const nlohmann::json& json) {
  // Old baselines are not migrated: the user learns anew.
  if (jsonRequired<int>(json, "version") != currentVersion) return std::nullopt;
  const auto eyeDistance = jsonRequired<double>(json, "eyeDistance");
  const auto eyeHeight = jsonRequired<double>(json, "eyeHeight");
  const auto eyeAngle = jsonRequired<double>(json, "eyeAngle");
  const auto faceElevation = jsonRequired<double>(json, "faceElevation");
  const auto pitch = jsonRequired<double>(json, "pitch");
  const auto learnedAt = jsonRequired<Date>(json, "learnedAt");
  if (!eyeDistance || !eyeHeight || !eyeAngle || !faceElevation || !pitch || !learnedAt)
    return std::nullopt;

  Baseline base;
  base.eyeDistance = *eyeDistance;
  base.eyeHeight = *eyeHeight;
  base.eyeAngle = *eyeAngle;
  base.faceElevation = *faceElevation;
  base.pitch = *pitch;
  base.learnedAt = *learnedAt;
  const bool optionalsRead =
      jsonOptional(json, "faceRatio", base.faceRatio) &&
      jsonOptional(json, "shoulderWidthCm", base.shoulderWidthCm) &&
      jsonOptional(json, "depthGap", base.depthGap) &&
      jsonOptional(json, "shoulderDepth", base.shoulderDepth) &&
      jsonOptional(json, "neck", base.neck) && jsonOptional(json, "lateral", base.lateral) &&
      jsonOptional(json, "shoulderAngle", base.shoulderAngle) &&
      jsonOptional(json, "shoulderRay", base.shoulderRay) && jsonOptional(json, "lid", base.lid) &&
      nestedOptional(json, "gaze", base.gaze, gazeFrom) &&
      nestedOptional(json, "frame", base.frame, frameFrom);
  if (!optionalsRead) return std::nullopt;
  return base;
}

}  // namespace sodam
