#pragma once
#include <memory>

#include "cloud/loopback_server.h"

namespace sodam {

// The sign-in's listener on Linux: a TCP socket on 127.0.0.1 at a port the
// system picks, one thread accepting and one per connection. A connection
// that stays silent for `idleSeconds` counts as failed; at most
// `connectionLimit` are read at once, further ones are closed unread.
class LinuxLoopbackListener final : public LoopbackListener {
 public:
  static constexpr int idleSeconds = 10;
  static constexpr int connectionLimit = 16;

  ~LinuxLoopbackListener() override;
  void start(Events events) override;
  void stop() override;

  struct Shared;

 private:
  std::shared_ptr<Shared> shared_;
};

}  // namespace sodam
