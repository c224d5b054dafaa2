#include "cloud/cloud_auth.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "cloud/url_text.h"
#include "support/json.h"
#include "support/utf8.h"
#include "support/uuid.h"

namespace sodam {

namespace {

// A fresh UUID without its dashes, in lower case: 32 hexadecimal characters.
std::string freshState() {
  std::string state;
  for (char c : newUuid())
    if (c != '-') state += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return state;
}

std::optional<std::string> value(const LoopbackValues& values, const char* key) {
  auto found = values.find(key);
  if (found == values.end()) return std::nullopt;
  return found->second;
}

// "expires_in" is text; anything that isn't a number counts as an hour.
double lifetimeSeconds(const nlohmann::json& answer) {
  const auto text = jsonRequired<std::string>(answer, "expires_in");
  if (!text || text->empty()) return CloudAuth::defaultTokenSeconds;
  char* end = nullptr;
  const double seconds = std::strtod(text->c_str(), &end);
  return *end == '\0' ? seconds : CloudAuth::defaultTokenSeconds;
}

}  // namespace

std::string CloudAuth::rawValue(Provider provider) {
  return provider == Provider::apple ? "apple" : "google";
}

std::string CloudAuth::title(Provider provider) {
  return provider == Provider::apple ? "애플" : "구글";
}

CloudAuth::CloudAuth(CloudConfig config, Ports ports)
    : config_(std::move(config)), ports_(std::move(ports)) {
  restore();
}

CloudAuth::~CloudAuth() {
  if (server_) server_->stop();
  self_.reset();
}

void CloudAuth::restore() {
  if (auto stored = ports_.keychain.read(Keychain::userAccount))
    if (auto json = parseJson(*stored)) user_ = cloudUserFromJson(*json);
  refresh_ = ports_.keychain.read(Keychain::refreshAccount);
  if (!refresh_) user_.reset();
}

void CloudAuth::signIn(Provider provider) {
  stopServer();
  const std::string state = freshState();
  pending_ = Pending{state, provider};
  setPhase(Phase::waiting(provider));
  auto listener = ports_.listeners ? ports_.listeners() : nullptr;
  server_ = std::make_unique<LoopbackServer>(
      std::move(listener), ports_.scheduler,
      weakAsk(self_, false,
              [](CloudAuth& auth, const LoopbackValues& values) { return auth.received(values); }));
  server_->start(weakCall(
      self_, [state](CloudAuth& auth, std::optional<int> port) { auth.listening(state, port); }));
  expiry_ = ports_.scheduler.mainTimer(
      signInSeconds, weakCall(self_, [state](CloudAuth& auth) { auth.expire(state); }));
}

void CloudAuth::listening(const std::string& state, std::optional<int> port) {
  if (!pending_ || pending_->state != state) return;  // a newer sign-in took over
  if (!port) return fail("로그인 창구를 열지 못했어요");
  if (ports_.openUrl) ports_.openUrl(loginUrl(pending_->provider, *port, state));
}

std::string CloudAuth::loginUrl(Provider provider, int port, const std::string& state) const {
  return config_.loginPage() + "?provider=" + rawValue(provider) + "&port=" + std::to_string(port) +
         "&state=" + percentEncode(state);
}

void CloudAuth::expire(const std::string& state) {
  if (!pending_ || pending_->state != state) return;
  stopServer();
  pending_.reset();
  if (phase_.kind != Phase::Kind::failed) setPhase(Phase::idle());
}

bool CloudAuth::received(const LoopbackValues& values) {
  const auto state = value(values, "state");
  if (!pending_ || values.empty() || !state || *state != pending_->state) return false;
  if (const auto error = value(values, "error")) {
    if (*error == "cancelled")
      fail("로그인을 취소했어요");
    else if (*error == "disabled")
      fail("아직 이 로그인이 열리지 않았어요");
    else
      fail("로그인하지 못했어요");
    return false;
  }
  const auto token = value(values, "token");
  if (token && !token->empty() && value(values, "uid")) {
    succeed(values);
    return true;
  }
  fail("로그인하지 못했어요");
  return true;
}

void CloudAuth::succeed(const LoopbackValues& values) {
  const Provider provider = pending_->provider;
  stopServer();
  pending_.reset();
  refresh_ = *value(values, "token");
  access_.reset();
  const std::string name = value(values, "name").value_or("");
  user_ = CloudUser{*value(values, "uid"),
                    utf8::prefix(name.empty() ? "친구" : name, CloudUser::nameLimit),
                    rawValue(provider), value(values, "email")};
  ports_.keychain.write(Keychain::refreshAccount, *refresh_);
  ports_.keychain.write(Keychain::userAccount, toJson(*user_).dump());
  phase_ = Phase::idle();
  onChange.notify();
  if (ports_.bringToFront) ports_.bringToFront();
  if (onSignedIn) onSignedIn();
}

void CloudAuth::fail(const std::string& message) {
  stopServer();
  pending_.reset();
  setPhase(Phase::failed(message));
}

void CloudAuth::cancel() {
  stopServer();
  pending_.reset();
  setPhase(Phase::idle());
}

void CloudAuth::signOut() {
  cancel();
  refresh_.reset();
  access_.reset();
  ports_.keychain.remove(Keychain::refreshAccount);
  ports_.keychain.remove(Keychain::userAccount);
  user_.reset();
  onChange.notify();
  if (onSignedOut) onSignedOut();
}

void CloudAuth::rename(const std::string& name) {
  if (!user_) return;
  user_->name = utf8::prefix(name, CloudUser::nameLimit);
  ports_.keychain.write(Keychain::userAccount, toJson(*user_).dump());
  onChange.notify();
}

void CloudAuth::stopServer() {
  expiry_.invalidate();
  if (!server_) return;
  server_->stop();
  // The server may be answering the very request that ends it: let it go on
  // the next turn.
  std::shared_ptr<LoopbackServer> ended = std::move(server_);
  ports_.scheduler.post([ended] {});
}

void CloudAuth::setPhase(Phase phase) {
  if (phase == phase_) return;
  phase_ = std::move(phase);
  onChange.notify();
}

void CloudAuth::token(std::function<void(CloudResult<std::string>)> done) {
  const Date now = ports_.clock.now();
  if (access_ && access_->until - now > refreshAheadSeconds) return done(access_->token);
  if (!refresh_) return done(CloudError::signedOut());
  HttpRequest request{"POST",
                      config_.tokenUrl(),
                      {{"Content-Type", "application/x-www-form-urlencoded"}},
                      "grant_type=refresh_token&refresh_token=" + percentEncode(*refresh_),
                      tokenTimeoutSeconds};
  ports_.http.send(std::move(request), weakCall(self_, [done = std::move(done)](
                                                           CloudAuth& auth, HttpResponse response) {
                     auth.tokenAnswered(response, done);
                   }));
}

void CloudAuth::tokenAnswered(const HttpResponse& response,
                              const std::function<void(CloudResult<std::string>)>& done) {
  // Signed out while the request was out: its answer belongs to nobody.
  if (!refresh_) return done(CloudError::signedOut());
  const auto answer = response.status == 200 ? parseJson(response.body) : std::nullopt;
  const auto idToken = answer ? jsonRequired<std::string>(*answer, "id_token") : std::nullopt;
  if (idToken) {
    const auto rotated = jsonRequired<std::string>(*answer, "refresh_token");
    if (rotated && rotated != refresh_) {
      refresh_ = *rotated;
      ports_.keychain.write(Keychain::refreshAccount, *refresh_);
    }
    access_ = Access{*idToken, ports_.clock.now() + lifetimeSeconds(*answer)};
    return done(*idToken);
  }
  if (response.status == 400 || response.status == 401) signOut();
  done(CloudError::http(response.status,
                        utf8::isValid(response.body) ? response.body : std::string()));
}

}  // namespace sodam
