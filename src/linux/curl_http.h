#pragma once
#include "cloud/http_client.h"
#include "support/scheduler.h"
#include "support/serial_queue.h"

namespace sodam {

// The cloud's HTTPS client on Linux: libcurl on a worker queue of its own,
// each answer posted to the main thread. Only http and https are spoken.
class CurlHttp final : public HttpClient {
 public:
  explicit CurlHttp(Scheduler& scheduler);
  // Finishes the requests already queued; their answers still get posted.
  ~CurlHttp() override = default;
  void send(HttpRequest request, Answer answer) override;

  // The request on the calling thread; status 0 when no HTTP answer came.
  static HttpResponse perform(const HttpRequest& request);

 private:
  Scheduler& scheduler_;
  ThreadQueue queue_{"cloud.http"};
};

}  // namespace sodam
