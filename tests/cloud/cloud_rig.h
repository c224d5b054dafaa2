#pragma once
// The cloud layer in virtual time against the in-process double of the
// service: a signed-in user is one call away, and the sign-in's listener is a
// fake whose requests a test sends as a browser would.
#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "cloud/cloud_auth.h"
#include "cloud/firestore.h"
#include "sim/cloud_double.h"
#include "support/manual_scheduler.h"

namespace sodam::testing {

class FakeListener final : public LoopbackListener {
 public:
  struct Log {
    std::optional<int> port = 49152;  // what the next listener reports; nothing: it fails
    int started = 0;
    int stopped = 0;
    Events events;  // the newest listener's
  };
  explicit FakeListener(std::shared_ptr<Log> log) : log_(std::move(log)) {}
  void start(Events events) override {
    ++log_->started;
    log_->events = std::move(events);
    log_->events.ready(log_->port);
  }
  void stop() override { ++log_->stopped; }

 private:
  std::shared_ptr<Log> log_;
};

struct CloudRig {
  ManualClock clock{Date{800'000'000}};
  ManualScheduler scheduler{clock};
  CloudDouble service;
  CloudDouble::Http http{service, scheduler};
  MemoryKeychain keychain;
  std::shared_ptr<FakeListener::Log> listener = std::make_shared<FakeListener::Log>();
  std::vector<std::string> opened;
  int broughtToFront = 0;
  std::unique_ptr<CloudAuth> auth;
  std::unique_ptr<Firestore> firestore;

  CloudRig() { start(); }

  // A fresh CloudAuth over the keychain as it stands, as at the program's start.
  void start() {
    firestore.reset();
    auth.reset();
    CloudAuth::Ports ports{http,
                           keychain,
                           clock,
                           scheduler,
                           [log = listener] { return std::make_unique<FakeListener>(log); },
                           [this](const std::string& url) { opened.push_back(url); },
                           [this] { ++broughtToFront; }};
    auth = std::make_unique<CloudAuth>(CloudConfig::loopback(8080), ports);
    firestore = std::make_unique<Firestore>(*auth, http);
  }

  // A stored session of `uid`, known to the double's token service.
  void signInAs(const std::string& uid, const std::string& name = "친구") {
    keychain.write(Keychain::refreshAccount, service.addUser(uid));
    keychain.write(Keychain::userAccount, toJson(CloudUser{uid, name, "google", {}}).dump());
    start();
  }

  // Runs posted work until the result has come.
  template <class T>
  T await(const std::optional<T>& slot) {
    for (int i = 0; i < 100 && !slot; ++i)
      scheduler.runPosted();
    return *slot;
  }

  // The whole HTTP answer of the listener to `raw`, as a browser gets it: the
  // listener's queue waits for the main thread, which this keeps turning.
  std::string browse(const std::string& raw) {
    LoopbackRequest request;
    if (request.feed(raw, true) != LoopbackRequest::Next::answer) return {};
    std::atomic<bool> done{false};
    std::string answer;
    std::thread queue([&] {
      answer = listener->events.exchange(request);
      done = true;
    });
    while (!done)
      scheduler.runPosted();
    queue.join();
    scheduler.runPosted();
    return answer;
  }
};

}  // namespace sodam::testing
