// libFuzzer target: arbitrary bytes, in arbitrary chunks, through the loopback
// listener's request reader and the parser of its values.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "cloud/loopback_server.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using sodam::LoopbackRequest;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  // The first two bytes pick the chunk size, so the reader sees requests split
  // anywhere, from single bytes to whole reads.
  const std::size_t chunk = size < 2 ? 1
                                     : 1 + (data[0] | static_cast<std::size_t>(data[1]) << 8) %
                                               LoopbackRequest::limitBytes;
  LoopbackRequest request;
  auto next = LoopbackRequest::Next::read;
  std::size_t at = 0;
  while (next == LoopbackRequest::Next::read) {
    const std::string_view piece = bytes.substr(at, chunk);
    at += piece.size();
    next = request.feed(piece, at >= bytes.size());
  }
  if (next == LoopbackRequest::Next::answer) {
    if (request.body().size() > LoopbackRequest::limitBytes) __builtin_trap();
    (void)sodam::loopbackValues(request.header(), request.body());
  }
  return 0;
}
