#pragma once
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "support/scheduler.h"
#include "support/weak_call.h"

namespace sodam {

// One request to the loopback listener as its bytes arrive. The listener
// feeds each chunk it reads and does what `feed` answers. Hard limits keep a
// local process from making it hold more than a few pages of text.
class LoopbackRequest {
 public:
  static constexpr std::size_t limitBytes = 16384;
  enum class Next { read, drop, answer };

  // `ended`: the connection ended or failed after this chunk.
  Next feed(std::string_view chunk, bool ended);
  // After `answer`: the header block (without its blank line) and the body,
  // cut to the limit.
  const std::string& header() const { return header_; }
  const std::string& body() const { return body_; }

 private:
  Next complete(bool ended);
  std::string buffer_;
  std::string header_;
  std::string body_;
  std::optional<std::size_t> headerEnd_;
  std::size_t length_ = 0;
};

using LoopbackValues = std::map<std::string, std::string>;

// The values of a complete request to "/done": a form POST's body or a GET's
// query. Nothing for a bad request (another path, a broken request line);
// another method gives no values.
std::optional<LoopbackValues> loopbackValues(std::string_view header, std::string_view body);
// The whole HTTP answer: status 200 whatever happened, with the page that
// says whether the sign-in was taken.
std::string loopbackAnswer(bool accepted);

// The platform's one-shot TCP listener on 127.0.0.1 at an ephemeral port.
// It reads each connection into a LoopbackRequest and sends what `exchange`
// answers, then closes; a dropped request gets no answer. Both callbacks run
// on the listener's own queue, never on the main thread.
class LoopbackListener {
 public:
  struct Events {
    std::function<void(std::optional<int> port)> ready;           // nothing: it could not listen
    std::function<std::string(const LoopbackRequest&)> exchange;  // may block
  };
  virtual ~LoopbackListener() = default;
  virtual void start(Events events) = 0;
  // Called on the main thread: no further connection is taken. It never waits
  // for an exchange in progress, which still sends its page.
  virtual void stop() = 0;
};
using LoopbackListenerFactory = std::function<std::unique_ptr<LoopbackListener>()>;

// The sign-in's one-shot web server: the listener's requests to "/done"
// become calls of `handle` on the main thread, whose answer picks the page.
// Lives on the main thread; the listener's queue waits for `handle`.
class LoopbackServer {
 public:
  using Handle = std::function<bool(const LoopbackValues&)>;

  LoopbackServer(std::unique_ptr<LoopbackListener> listener, Scheduler& scheduler, Handle handle);
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  // `ready` comes on the main thread with the port, or nothing.
  void start(std::function<void(std::optional<int>)> ready);
  void stop();

 private:
  // What the listener's queue shares with the main thread: the questions
  // waiting for `handle`, answered false once the server stops.
  struct Gate;

  std::unique_ptr<LoopbackListener> listener_;
  Scheduler& scheduler_;
  Handle handle_;
  std::shared_ptr<Gate> gate_;
  LifeToken<LoopbackServer> self_ = lifeToken(this);
};

}  // namespace sodam
