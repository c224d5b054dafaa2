#include "camerawatch/line_buffer.h"

namespace sodam {

void LineBuffer::append(std::string_view bytes) {
  // Drop what was already cut off before the buffer grows again.
  if (start_ > 0 && start_ * 2 >= bytes_.size()) {
    bytes_.erase(0, start_);
    start_ = 0;
  }
  bytes_.append(bytes);
}

std::optional<std::string> LineBuffer::next() {
  const auto feed = bytes_.find('\n', start_);
  if (feed == std::string::npos) return std::nullopt;
  std::string line = bytes_.substr(start_, feed - start_);
  start_ = feed + 1;
  return line;
}

}  // namespace sodam
