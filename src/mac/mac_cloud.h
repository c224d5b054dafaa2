#pragma once

// The cloud's platform ports on the Mac. Made and used on the main thread;
// the loopback listener works on its own dispatch queue and the URL session
// on its delegate queue, and both hop to the main thread through the core.

#include <memory>

#include "cloud/cloud_auth.h"
#include "cloud/http_client.h"
#include "cloud/keychain.h"
#include "cloud/loopback_server.h"

namespace sodam {

// Generic password items of the service "kr.lumenfold.sodamjari", readable
// after the first unlock on this device only.
class MacKeychain final : public Keychain {
 public:
  std::optional<std::string> read(const std::string& account) override;
  void write(const std::string& account, const std::string& bytes) override;
  void remove(const std::string& account) override;
};

// HTTPS through the shared URL session; answers are posted to the main thread.
class MacHttp final : public HttpClient {
 public:
  explicit MacHttp(Scheduler& scheduler) : scheduler_(scheduler) {}
  void send(HttpRequest request, Answer answer) override;

 private:
  Scheduler& scheduler_;
};

// The Network framework's TCP listener, required to be on 127.0.0.1, on the
// serial queue "kr.lumenfold.sodamjari.loopback".
std::unique_ptr<LoopbackListener> makeMacLoopbackListener();

// Everything CloudAuth needs from the Mac: the URL opens in the default
// browser, and a finished sign-in brings the application to the front.
struct MacCloud {
  explicit MacCloud(Scheduler& scheduler) : http(scheduler) {}
  MacKeychain keychain;
  MacHttp http;
  CloudAuth::Ports ports(const Clock& clock, Scheduler& scheduler);
};

}  // namespace sodam
