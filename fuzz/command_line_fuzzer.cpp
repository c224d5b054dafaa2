// Command lines as the helper receives them, answered from sources that
// always have something to say.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "camerawatch/log_helper.h"

namespace {

class Sources final : public sodam::CameraSources {
 public:
  std::vector<sodam::CameraRecord> clients(double from, double to) override {
    return {record(true, from), record(true, to)};
  }
  std::vector<sodam::CameraRecord> requests(double from, double) override {
    auto r = record(false, from);
    r.actor = "/opt/tool";
    r.allowed = true;
    return {r};
  }
  std::optional<sodam::IndicatorUpdate> indicator(double, double to) override {
    return sodam::IndicatorUpdate{to, {{"A", "a.id"}}};
  }
  void startStream(StreamHandler handler) override {
    if (!stream) stream = std::move(handler);
  }
  void stopStream() override { stream = nullptr; }
  StreamHandler stream;

 private:
  static sodam::CameraRecord record(bool client, double time) {
    sodam::CameraRecord r;
    r.client = client;
    r.time = time;
    r.key = "k";
    r.identifier = "x";
    r.path = "/x";
    r.pid = 1;
    return r;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Sources sources;
  std::ostringstream out;
  sodam::LogHelper helper(sources, out);
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  helper.run(in);
  if (sources.stream) sources.stream(sodam::IndicatorUpdate{1, {}});
  return 0;
}
