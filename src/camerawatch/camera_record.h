#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sodam {

// The records that cross the pipe between the camera-log helper and the main
// process, one JSON object a line, UTF-8, keys exactly as the fields are
// named. Times are seconds since 1970, not the stored records' 2001 dates.

// One party the system shows as using the camera.
struct CameraUser {
  std::string name;  // display name
  std::string id;    // the application's identifier

  bool operator==(const CameraUser&) const = default;
};

// One reading of who uses the camera; an empty list means nobody.
struct IndicatorUpdate {
  double time = 0;
  std::vector<CameraUser> cams;

  bool operator==(const IndicatorUpdate&) const = default;
};

// One finding of who used the camera: from the camera stack (`client`) or
// from the permission daemon.
struct CameraRecord {
  bool client = false;
  double time = 0;
  // "c{pid}@{seconds}" or "{msgID}@{seconds}", for de-duplication.
  std::string key;
  // The process's file name (client) or the application's identifier.
  std::string identifier;
  std::string path;
  std::int64_t pid = 0;
  // Permission records only: the process that really touched the camera,
  // when it is not the application itself.
  std::optional<std::string> actor;
  // Only a check of the right, not a use.
  bool preflight = false;
  // The permission daemon's answer, when one was logged.
  std::optional<bool> allowed;

  bool operator==(const CameraRecord&) const = default;
};

// The JSON line of a record; nothing when it can't be encoded (a time that
// is not finite). Text that is not UTF-8 is mended, never refused.
std::optional<std::string> encodeLine(const CameraRecord& record);
std::optional<std::string> encodeLine(const IndicatorUpdate& update);

// A line read back; nothing when it is not such a record: not JSON, a
// required key missing or of another type, an optional key of another type.
std::optional<CameraRecord> decodeCameraRecord(std::string_view line);
std::optional<IndicatorUpdate> decodeIndicatorUpdate(std::string_view line);

// A Unix time as the shortest plain decimal text that reads back exactly,
// as commands carry their windows.
std::string decimalSeconds(double seconds);

}  // namespace sodam
