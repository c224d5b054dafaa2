// What the helper writes back as the main process reads it: answer lines,
// terminators and stream lines in chunks cut anywhere, against calls of
// every kind waiting for their answers.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "camerawatch/log_link.h"
#include "support/manual_scheduler.h"

namespace {

class Channel final : public sodam::HelperChannel {
 public:
  bool write(std::string_view) override { return true; }
  void startReading(ChunkHandler) override {}
  void stopReading() override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace sodam;
  ManualClock clock;
  ManualScheduler scheduler(clock);
  LogLink link(std::make_unique<Channel>(), scheduler);
  std::size_t answers = 0;
  link.onIndicator = [&](const IndicatorUpdate&) { ++answers; };
  link.query(Date{}, Date{1}, true, [&](std::vector<CameraRecord> r) { answers += r.size(); });
  link.indicator(Date{}, Date{1}, [&](std::optional<IndicatorUpdate>) { ++answers; });
  link.stream(true);
  link.query(Date{}, Date{1}, false, [&](std::vector<CameraRecord> r) { answers += r.size(); });
  // The first byte chooses where the chunks are cut.
  const std::size_t cut = size > 0 ? 1 + data[0] % 64 : 1;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (std::size_t at = size > 0 ? 1 : 0; at < size; at += cut)
    link.received(text.substr(at, cut));
  link.received({});  // the helper ends: every call still waiting is answered
  (void)answers;
  return 0;
}
