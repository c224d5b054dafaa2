#pragma once

#include <string>
#include <vector>

#include "camerawatch/helper_channel.h"

namespace sodam {

// A channel whose far end is the test: it keeps what was written and hands
// chunks over as the helper's reader thread would.
class FakeChannel final : public HelperChannel {
 public:
  std::string written;
  bool writable = true;
  bool reading = false;
  ChunkHandler onChunk;

  bool write(std::string_view bytes) override {
    if (!writable) return false;
    written += bytes;
    return true;
  }
  void startReading(ChunkHandler handler) override {
    reading = true;
    onChunk = std::move(handler);
  }
  void stopReading() override { reading = false; }
  // The helper writes.
  void answer(const std::string& bytes) { onChunk(bytes); }
};

}  // namespace sodam
