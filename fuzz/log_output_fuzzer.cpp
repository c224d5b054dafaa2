// The log tool's output as the helper reads it: lines of JSON, timestamps,
// permission and indicator messages, records encoded for the pipe.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "camerawatch/camera_findings.h"
#include "camerawatch/log_entry.h"
#include "camerawatch/log_messages.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace sodam;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto entries = parseLogOutput(text);
  const HelperSelf self{500, "/Applications/SodamJari.app/Contents/MacOS/SodamJari",
                        macSystemFolders()};
  for (const auto& record : clientRecords(entries, self))
    (void)encodeLine(record);
  for (const auto& record : privacyRecords(entries, self))
    (void)encodeLine(record);
  if (auto last = lastIndicator(entries)) (void)encodeLine(*last);
  for (const auto line : splitLines(text)) {
    (void)streamedIndicator(line, 1);
    (void)parseLogTimestamp(line);
    (void)cams(line);
    (void)logParty(line, "accessing");
  }
  return 0;
}
