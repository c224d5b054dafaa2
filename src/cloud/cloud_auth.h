#pragma once
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "cloud/cloud_config.h"
#include "cloud/cloud_error.h"
#include "cloud/cloud_user.h"
#include "cloud/http_client.h"
#include "cloud/keychain.h"
#include "cloud/loopback_server.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// The signed-in user and their tokens. Signing in opens the hosted login page
// in the browser, which hands a refresh token back to a one-shot loopback
// server; from then on `token()` turns it into short-lived ID tokens. The
// refresh token and the user live in the keychain; the ID token only in
// memory. Main thread only.
class CloudAuth {
 public:
  enum class Provider { google, apple };
  static std::string rawValue(Provider provider);  // "google", "apple"
  static std::string title(Provider provider);     // "구글", "애플"

  struct Phase {
    enum class Kind { idle, waiting, failed };
    Kind kind = Kind::idle;
    Provider provider = Provider::google;  // waiting
    std::string message;                   // failed

    static Phase idle() { return {}; }
    static Phase waiting(Provider provider) { return {Kind::waiting, provider, {}}; }
    static Phase failed(std::string message) { return {Kind::failed, Provider::google, message}; }
    bool operator==(const Phase&) const = default;
  };

  struct Ports {
    HttpClient& http;
    Keychain& keychain;
    const Clock& clock;
    Scheduler& scheduler;
    LoopbackListenerFactory listeners;
    std::function<void(const std::string& url)> openUrl;  // in the default browser
    std::function<void()> bringToFront;
  };

  static constexpr double signInSeconds = 300;  // a sign-in left open ends quietly
  static constexpr double refreshAheadSeconds =
      300;  // an ID token this close to its end is renewed
  static constexpr double tokenTimeoutSeconds = 60;
  static constexpr double defaultTokenSeconds = 3600;

  // Reads the stored session from the keychain.
  CloudAuth(CloudConfig config, Ports ports);
  ~CloudAuth();
  CloudAuth(const CloudAuth&) = delete;
  CloudAuth& operator=(const CloudAuth&) = delete;

  const std::optional<CloudUser>& user() const { return user_; }
  bool signedIn() const { return user_.has_value(); }
  const Phase& phase() const { return phase_; }
  const CloudConfig& config() const { return config_; }
  // After any change of `user` or `phase`.
  ChangeSignal onChange;
  // Set by the application: the study groups start after a sign-in (and at
  // start for a stored session, which the application calls itself) and empty
  // themselves after a sign-out.
  std::function<void()> onSignedIn;
  std::function<void()> onSignedOut;

  void signIn(Provider provider);
  void cancel();
  void signOut();
  void rename(const std::string& name);

  // A valid ID token, on the main thread: from memory while it has more than
  // five minutes left, else from the token service. A refresh token the
  // service rejects (400, 401) signs the user out first.
  void token(std::function<void(CloudResult<std::string>)> done);

  // A request to the loopback server's "/done"; true picks the happy page.
  bool received(const LoopbackValues& values);

 private:
  struct Access {
    std::string token;
    Date until;
  };
  struct Pending {
    std::string state;
    Provider provider;
  };

  void restore();
  void listening(const std::string& state, std::optional<int> port);
  void expire(const std::string& state);
  void succeed(const LoopbackValues& values);
  void fail(const std::string& message);
  void stopServer();
  void setPhase(Phase phase);
  void tokenAnswered(const HttpResponse& response,
                     const std::function<void(CloudResult<std::string>)>& done);
  std::string loginUrl(Provider provider, int port, const std::string& state) const;

  CloudConfig config_;
  Ports ports_;
  std::optional<CloudUser> user_;
  Phase phase_;
  std::optional<std::string> refresh_;
  std::optional<Access> access_;
  std::unique_ptr<LoopbackServer> server_;
  std::optional<Pending> pending_;
  Timer expiry_;
  LifeToken<CloudAuth> self_ = lifeToken(this);
};

}  // namespace sodam
