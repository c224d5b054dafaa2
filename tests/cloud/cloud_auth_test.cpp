#include <gtest/gtest.h>

#include <regex>

#include "cloud/url_text.h"
#include "cloud_rig.h"

namespace sodam {
namespace {

using testing::CloudRig;
using Phase = CloudAuth::Phase;

// The value of `key` in the captured login URL's query.
std::string queryItem(const std::string& url, const std::string& key) {
  const auto query = parseQuery(url.substr(url.find('?') + 1));
  return query && query->contains(key) ? query->at(key) : std::string();
}

class SignIn : public ::testing::Test {
 protected:
  // Starts a sign-in and gives its state, read from the opened page's URL.
  std::string begin(CloudAuth::Provider provider = CloudAuth::Provider::google) {
    rig.auth->signIn(provider);
    rig.scheduler.runPosted();
    return queryItem(rig.opened.back(), "state");
  }
  CloudRig rig;
};

TEST_F(SignIn, opensTheLoginPageWithProviderPortAndAFreshStateInThatOrder) {
  rig.listener->port = 51234;
  const std::string state = begin(CloudAuth::Provider::apple);
  ASSERT_EQ(rig.opened.size(), 1u);
  EXPECT_TRUE(std::regex_match(state, std::regex("[0-9a-f]{32}"))) << state;
  EXPECT_EQ(rig.opened[0],
            "http://127.0.0.1:8080/login.html?provider=apple&port=51234&state=" + state);
  EXPECT_EQ(rig.auth->phase(), Phase::waiting(CloudAuth::Provider::apple));
  rig.auth->signIn(CloudAuth::Provider::google);
  rig.scheduler.runPosted();
  EXPECT_NE(queryItem(rig.opened.back(), "state"), state);
}

TEST_F(SignIn, aListenerThatCannotListenFailsTheSignIn) {
  rig.listener->port.reset();
  rig.auth->signIn(CloudAuth::Provider::google);
  rig.scheduler.runPosted();
  EXPECT_TRUE(rig.opened.empty());
  EXPECT_EQ(rig.auth->phase(), Phase::failed("로그인 창구를 열지 못했어요"));
}

TEST_F(SignIn, strayRequestsChangeNothing) {
  const std::string state = begin();
  EXPECT_FALSE(rig.auth->received({}));
  EXPECT_FALSE(rig.auth->received({{"token", "t"}, {"uid", "u"}}));
  EXPECT_FALSE(rig.auth->received({{"state", "0123"}, {"token", "t"}, {"uid", "u"}}));
  EXPECT_EQ(rig.auth->phase(), Phase::waiting(CloudAuth::Provider::google));
  EXPECT_EQ(rig.listener->stopped, 0);
  // The right state still works after them.
  EXPECT_TRUE(rig.auth->received({{"state", state}, {"token", "t"}, {"uid", "u"}}));
  EXPECT_TRUE(rig.auth->signedIn());
}

TEST_F(SignIn, errorsFromTheLoginPageFailWithTheirOwnWords) {
  const std::pair<const char*, const char*> cases[] = {
      {"cancelled", "로그인을 취소했어요"},
      {"disabled", "아직 이 로그인이 열리지 않았어요"},
      {"popup-blocked", "로그인하지 못했어요"}};
  for (const auto& [error, words] : cases) {
    const std::string state = begin();
    EXPECT_FALSE(rig.auth->received({{"state", state}, {"error", error}, {"token", "t"}}));
    EXPECT_EQ(rig.auth->phase(), Phase::failed(words)) << error;
    EXPECT_FALSE(rig.auth->signedIn());
    // The sign-in is over: the same state is a stranger now.
    EXPECT_FALSE(rig.auth->received({{"state", state}, {"token", "t"}, {"uid", "u"}}));
  }
}

TEST_F(SignIn, successStoresTheSessionAndTellsTheGroups) {
  int signedIn = 0;
  rig.auth->onSignedIn = [&] { ++signedIn; };
  const std::string state = begin(CloudAuth::Provider::apple);
  EXPECT_TRUE(rig.auth->received({{"state", state},
                                  {"token", "refresh-1"},
                                  {"uid", "u1"},
                                  {"name", "가나다라마바사아자차카타파하"},
                                  {"email", "a@b.c"}}));
  EXPECT_EQ(rig.auth->user(), (CloudUser{"u1", "가나다라마바사아자차카타", "apple", "a@b.c"}));
  EXPECT_EQ(rig.auth->phase(), Phase::idle());
  EXPECT_EQ(rig.keychain.read(Keychain::refreshAccount), "refresh-1");
  EXPECT_EQ(rig.keychain.read(Keychain::userAccount),
            R"({"email":"a@b.c","name":"가나다라마바사아자차카타","provider":"apple","uid":"u1"})");
  EXPECT_EQ(rig.listener->stopped, 1);
  EXPECT_EQ(signedIn, 1);
  EXPECT_EQ(rig.broughtToFront, 1);
  // The stored session is what the next start finds.
  rig.start();
  EXPECT_EQ(rig.auth->user()->uid, "u1");
}

TEST_F(SignIn, anEmptyNameBecomesFriendAndAMissingTokenFailsWithTheHappyPage) {
  std::string state = begin();
  EXPECT_TRUE(rig.auth->received({{"state", state}, {"token", "t"}, {"uid", "u"}, {"name", ""}}));
  EXPECT_EQ(rig.auth->user()->name, "친구");
  EXPECT_EQ(rig.auth->user()->email, std::nullopt);
  rig.auth->signOut();
  state = begin();
  EXPECT_TRUE(rig.auth->received({{"state", state}, {"token", ""}, {"uid", "u"}}));
  EXPECT_EQ(rig.auth->phase(), Phase::failed("로그인하지 못했어요"));
  EXPECT_FALSE(rig.auth->signedIn());
}

TEST_F(SignIn, endsQuietlyAfterFiveMinutesUnlessItFailed) {
  begin();
  rig.scheduler.advance(CloudAuth::signInSeconds - 1);
  EXPECT_EQ(rig.auth->phase().kind, Phase::Kind::waiting);
  rig.scheduler.advance(CloudAuth::signInSeconds * 0.1 + 2);  // past the timer's tolerance
  EXPECT_EQ(rig.auth->phase(), Phase::idle());
  EXPECT_EQ(rig.listener->stopped, 1);
}

TEST_F(SignIn, aSecondSignInRefusesTheFirstTabsAnswer) {
  const std::string first = begin(CloudAuth::Provider::google);
  const std::string second = begin(CloudAuth::Provider::apple);
  EXPECT_EQ(rig.listener->started, 2);
  EXPECT_EQ(rig.listener->stopped, 1);
  EXPECT_FALSE(rig.auth->received({{"state", first}, {"token", "t"}, {"uid", "u"}}));
  EXPECT_EQ(rig.auth->phase(), Phase::waiting(CloudAuth::Provider::apple));
  // The first sign-in's timer no longer ends the second one early.
  rig.scheduler.advance(CloudAuth::signInSeconds * 0.5);
  EXPECT_TRUE(rig.auth->received({{"state", second}, {"token", "t"}, {"uid", "u"}}));
  EXPECT_EQ(rig.auth->user()->provider, "apple");
}

TEST_F(SignIn, theBrowserGetsThePageThatMatchesTheOutcome) {
  const std::string state = begin();
  const std::string stray = rig.browse("GET /done?state=nope&token=t&uid=u HTTP/1.1\r\n\r\n");
  EXPECT_NE(stray.find("요청을 확인하지 못했어요"), std::string::npos);
  const std::string other =
      rig.browse("GET /other?state=" + state + "&token=t&uid=u HTTP/1.1\r\n\r\n");
  EXPECT_NE(other.find("요청을 확인하지 못했어요"), std::string::npos);
  EXPECT_EQ(rig.auth->phase().kind, Phase::Kind::waiting);
  const std::string body = "state=" + state + "&token=a%2Bb+c&uid=u1&name=%EB%8F%84+%EB%9E%80";
  const std::string accepted = rig.browse(
      "POST /done HTTP/1.1\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
  EXPECT_EQ(accepted.rfind("HTTP/1.1 200 OK\r\n", 0), 0u);
  EXPECT_NE(accepted.find("로그인했어요"), std::string::npos);
  EXPECT_EQ(rig.keychain.read(Keychain::refreshAccount), "a+b c");
  EXPECT_EQ(rig.auth->user()->name, "도 란");
}

class Tokens : public ::testing::Test {
 protected:
  CloudResult<std::string> token() {
    std::optional<CloudResult<std::string>> result;
    rig.auth->token([&](CloudResult<std::string> r) { result = std::move(r); });
    return rig.await(result);
  }
  CloudRig rig;
};

TEST_F(Tokens, aStoredRecordWithoutItsRefreshTokenIsNoSession) {
  rig.keychain.write(Keychain::userAccount, R"({"uid":"u","name":"n","provider":"google"})");
  rig.start();
  EXPECT_FALSE(rig.auth->signedIn());
  EXPECT_EQ(token().error(), CloudError::signedOut());
  rig.keychain.write(Keychain::refreshAccount, "r");
  rig.keychain.write(Keychain::userAccount, R"({"uid":7})");
  rig.start();
  EXPECT_FALSE(rig.auth->signedIn());
  EXPECT_TRUE(rig.service.requests().empty());
}

TEST_F(Tokens, areRenewedOnlyWithinFiveMinutesOfTheirEnd) {
  rig.signInAs("u1");
  rig.service.setTokenSeconds(1000);
  const std::string first = token().value();
  rig.clock.advance(1000 - 301);
  EXPECT_EQ(token().value(), first);
  EXPECT_EQ(rig.service.requests().size(), 1u);
  rig.clock.advance(2);  // 299 seconds left
  EXPECT_NE(token().value(), first);
  EXPECT_EQ(rig.service.requests().size(), 2u);
}

TEST_F(Tokens, aNewRefreshTokenIsKeptAndAnOddLifetimeCountsAsAnHour) {
  rig.signInAs("u1");
  rig.service.rotateRefreshTokens(1);
  const auto before = rig.keychain.read(Keychain::refreshAccount);
  ASSERT_TRUE(token().ok());
  EXPECT_NE(rig.keychain.read(Keychain::refreshAccount), before);
  // The rotated token is the one the service now takes.
  rig.service.revoke(*before);
  rig.clock.advance(3600);
  EXPECT_TRUE(token().ok());
  rig.service.clearRequests();
  rig.service.garbleWith = R"({"id_token":"x","expires_in":"soon"})";
  rig.clock.advance(3600);
  EXPECT_EQ(token().value(), "x");
  rig.clock.advance(3600 - 301);
  EXPECT_EQ(token().value(), "x");
  EXPECT_EQ(rig.service.requests().size(), 1u);
}

TEST_F(Tokens, aRejectedRefreshTokenSignsOutAndStillReportsTheRefusal) {
  rig.signInAs("u1");
  int signedOut = 0;
  rig.auth->onSignedOut = [&] { ++signedOut; };
  rig.service.revoke(*rig.keychain.read(Keychain::refreshAccount));
  const auto result = token();
  ASSERT_FALSE(result.ok());
  EXPECT_EQ(result.error().status, 400);
  EXPECT_EQ(result.error().text(), "서버와 연결하지 못했어요");
  EXPECT_FALSE(rig.auth->signedIn());
  EXPECT_TRUE(rig.keychain.items().empty());
  EXPECT_EQ(signedOut, 1);
}

TEST_F(Tokens, anAnswerAfterSigningOutKeepsNothing) {
  rig.signInAs("u1");
  rig.service.rotateRefreshTokens(1);
  std::optional<CloudResult<std::string>> result;
  rig.auth->token([&](CloudResult<std::string> r) { result = std::move(r); });
  rig.auth->signOut();
  EXPECT_EQ(rig.await(result).error(), CloudError::signedOut());
  EXPECT_TRUE(rig.keychain.items().empty());
}

TEST_F(Tokens, failuresOfTheServiceKeepTheSession) {
  rig.signInAs("u1");
  rig.service.failWith = 503;
  EXPECT_EQ(token().error().status, 503);
  rig.service.failWith.reset();
  rig.service.garbleWith = "<html>";
  EXPECT_EQ(token().error(), CloudError::http(200, "<html>"));
  EXPECT_TRUE(rig.auth->signedIn());
  EXPECT_EQ(rig.keychain.items().size(), 2u);
}

TEST_F(Tokens, renameCutsTheNameAndStoresIt) {
  rig.auth->rename("nobody");
  EXPECT_FALSE(rig.keychain.read(Keychain::userAccount));
  rig.signInAs("u1");
  rig.auth->rename("abcdefghijklmnopqrst");
  EXPECT_EQ(rig.auth->user()->name, "abcdefghijkl");
  rig.start();
  EXPECT_EQ(rig.auth->user()->name, "abcdefghijkl");
}

}  // namespace
}  // namespace sodam
