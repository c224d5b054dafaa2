// The cloud layer over real sockets: libcurl, the loopback listener and the
// keychain file, against the service's double on 127.0.0.1.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "cloud/url_text.h"
#include "double_server.h"
#include "linux/cloud_session.h"
#include "linux/curl_http.h"
#include "linux/file_keychain.h"
#include "support/json.h"
#include "support/text.h"

namespace sodam {
namespace {

using testing::DoubleServer;

class TempDirectory {
 public:
  TempDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "sodam-cloud-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
  }
  ~TempDirectory() { std::filesystem::remove_all(path_); }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// Connects to 127.0.0.1:port, sends the bytes and reads until the other side closes.
std::string exchange(int port, const std::string& bytes) {
  const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) return "refused";
  [[maybe_unused]] auto sent = ::send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  std::string answer;
  char chunk[4096];
  for (ssize_t n; (n = ::recv(fd, chunk, sizeof chunk, 0)) > 0;)
    answer.append(chunk, static_cast<std::size_t>(n));
  ::close(fd);
  return answer;
}

class CloudOverLoopback : public ::testing::Test {
 protected:
  CloudOverLoopback()
      : session(directory.path(), CloudConfig::loopback(server.port()),
                [this](const std::string& url) { opened = url; }) {}

  // Plays the browser on its own thread, as the listener waits for the main loop.
  std::string browse(int port, const std::string& bytes) {
    std::atomic<bool> done{false};
    std::string answer;
    std::thread browser([&] {
      answer = exchange(port, bytes);
      done = true;
    });
    session.runUntil([&] { return done.load(); }, 20);
    browser.join();
    return answer;
  }

  DoubleServer server;
  TempDirectory directory;
  std::string opened;
  CloudSession session;
};

TEST_F(CloudOverLoopback, signsInThroughTheBrowserAndReadsTheDatabase) {
  session.auth.signIn(CloudAuth::Provider::google);
  ASSERT_TRUE(session.runUntil([&] { return !opened.empty(); }, 5));
  const auto query = parseQuery(opened.substr(opened.find('?') + 1));
  ASSERT_TRUE(query);
  const int port = std::stoi(query->at("port"));
  const std::string state = query->at("state");

  // Another local process that guesses the path but not the state.
  const std::string stray = browse(port, "GET /done?state=0&token=x&uid=evil HTTP/1.1\r\n\r\n");
  EXPECT_NE(stray.find("요청을 확인하지 못했어요"), std::string::npos);
  EXPECT_EQ(session.auth.phase().kind, CloudAuth::Phase::Kind::waiting);
  // A header that never ends is cut off without a word.
  EXPECT_EQ(browse(port, "GET /done HTTP/1.1\r\n" + std::string(20000, 'x')), "");

  const std::string refresh = server.with([](CloudDouble& s) { return s.addUser("u7"); });
  const std::string body =
      "state=" + state + "&token=" + percentEncode(refresh) + "&uid=u7&name=%EB%8F%84%EB%9E%80";
  const std::string page = browse(port,
                                  "POST /done HTTP/1.1\r\nContent-Type: "
                                  "application/x-www-form-urlencoded\r\nContent-Length: " +
                                      std::to_string(body.size()) + "\r\n\r\n" + body);
  EXPECT_NE(page.find("로그인했어요"), std::string::npos);
  ASSERT_TRUE(session.auth.signedIn());
  EXPECT_EQ(session.auth.user()->name, "도란");
  // The listener is gone once the sign-in ended.
  EXPECT_TRUE(session.runUntil(
      [&] { return exchange(port, "GET /done HTTP/1.1\r\n\r\n") == "refused"; }, 5));

  server.with([](CloudDouble& s) {
    s.put("groups/g", {{"owner", "u7"}, {"members", Firestore::Array{"u7"}}});
    return 0;
  });
  std::optional<std::optional<CloudError>> committed;
  session.firestore.commit({Firestore::Write::set("groups/g/members/u7", {{"state", "good"}})},
                           [&](auto error) { committed = error; });
  ASSERT_TRUE(session.runUntil([&] { return committed.has_value(); }, 10));
  EXPECT_EQ(*committed, std::nullopt);
  std::optional<CloudResult<std::vector<Firestore::Doc>>> members;
  session.firestore.list("groups/g/members", [&](auto r) { members = std::move(r); });
  ASSERT_TRUE(session.runUntil([&] { return members.has_value(); }, 10));
  ASSERT_TRUE(members->ok());
  ASSERT_EQ(members->value().size(), 1u);
  EXPECT_EQ(members->value()[0].fields.at("state"), Firestore::Value("good"));
}

TEST_F(CloudOverLoopback, aLineThatDropsOrStaysSilentGivesNoStatus) {
  const std::string refresh = server.with([](CloudDouble& s) { return s.addUser("u1"); });
  const auto token =
      CurlHttp::perform({"POST",
                         session.auth.config().tokenUrl(),
                         {},
                         "grant_type=refresh_token&refresh_token=" + percentEncode(refresh),
                         5});
  const auto idToken = parseJson(token.body).value_or(nullptr).value("id_token", "");
  ASSERT_FALSE(idToken.empty());
  server.with([](CloudDouble& s) {
    s.put("groups/g", {{"owner", "u1"}, {"members", Firestore::Array{"u1"}}});
    s.dieOnNextCommit();
    return 0;
  });
  const HttpRequest commit{
      "POST",
      session.auth.config().documents() + ":commit",
      {{"Authorization", "Bearer " + idToken}},
      R"({"writes":[{"delete":"projects/sodamjari/databases/(default)/documents/groups/g"}]})",
      5};
  EXPECT_EQ(CurlHttp::perform(commit).status, 0);
  EXPECT_TRUE(server.with([](CloudDouble& s) { return s.document("groups/g").has_value(); }));
  EXPECT_EQ(CurlHttp::perform(commit).status, 200);
  // A listening port that never answers.
  int port = 0;
  const int silent = testing::listenOnLoopback(port);
  const std::string url = format("http://127.0.0.1:%d/x", port);
  EXPECT_EQ(CurlHttp::perform({"GET", url, {}, {}, 0.3}).status, 0);
  ::close(silent);
  EXPECT_EQ(CurlHttp::perform({"GET", url, {}, {}, 2}).status, 0);  // now nobody listens
  EXPECT_EQ(CurlHttp::perform({"GET", "file:///etc/passwd", {}, {}, 2}).status, 0);
}

TEST(FileKeychain, keepsItsSecretsInAFileOnlyTheOwnerReads) {
  TempDirectory directory;
  FileKeychain keychain(directory.path() / "nested");
  EXPECT_EQ(keychain.read(Keychain::refreshAccount), std::nullopt);
  keychain.write(Keychain::refreshAccount, "r1");
  keychain.write(Keychain::userAccount, R"({"uid":"u"})");
  struct stat info {};
  ASSERT_EQ(::stat(keychain.path().c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0600u);
  FileKeychain again(directory.path() / "nested");
  EXPECT_EQ(again.read(Keychain::userAccount), R"({"uid":"u"})");
  again.remove(Keychain::refreshAccount);
  EXPECT_EQ(keychain.read(Keychain::refreshAccount), std::nullopt);
  EXPECT_EQ(keychain.read(Keychain::userAccount), R"({"uid":"u"})");
  std::ofstream(keychain.path()) << "{damaged";
  EXPECT_EQ(keychain.read(Keychain::userAccount), std::nullopt);
}

TEST(FileKeychain, standsInWhenNoSecretServiceAnswers) {
  TempDirectory directory;
  const char* bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  const std::string saved = bus ? bus : "";
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  std::string kind;
  const auto keychain = openLinuxKeychain(directory.path(), kind);
  if (bus) ::setenv("DBUS_SESSION_BUS_ADDRESS", saved.c_str(), 1);
  EXPECT_EQ(kind, "a private file (mode 0600) at " + (directory.path() / "keychain.json").string());
  keychain->write(Keychain::refreshAccount, "r");
  EXPECT_TRUE(std::filesystem::exists(directory.path() / "keychain.json"));
}

}  // namespace
}  // namespace sodam
