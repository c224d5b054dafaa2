#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sodam {

// Bytes read from a pipe, cut into lines at line feeds as they complete; a
// line's tail waits for the next chunk. One thread at a time.
class LineBuffer {
 public:
  void append(std::string_view bytes);
  // The next whole line without its line feed; nothing until one is complete.
  std::optional<std::string> next();
  // What waits for its line feed.
  std::string_view pending() const { return std::string_view(bytes_).substr(start_); }

 private:
  std::string bytes_;
  std::size_t start_ = 0;
};

}  // namespace sodam
