#pragma once
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace sodam {

struct HttpRequest {
  std::string method = "GET";
  std::string url;
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;
  double timeoutSeconds = 15;
};

struct HttpResponse {
  int status = 0;  // 0: no HTTP answer (no connection, time-out, a dropped line)
  std::string body;
};

// The HTTPS client the cloud calls go through. `send` is called on the main
// thread and its answer comes back on the main thread (by Scheduler::post),
// never from inside `send`. Implementations: libcurl on Linux, the platform's
// URL loading on macOS, and the in-process double of the service.
class HttpClient {
 public:
  using Answer = std::function<void(HttpResponse)>;
  virtual ~HttpClient() = default;
  virtual void send(HttpRequest request, Answer answer) = 0;
};

}  // namespace sodam
