// The study groups' commands over real sockets, against the service's double
// on 127.0.0.1: two users in data directories of their own.
#include "linux/group_social_command.h"

#include <stdlib.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "double_server.h"
#include "linux/file_keychain.h"

namespace sodam {
namespace {

struct Person {
  Person(testing::DoubleServer& server, const std::string& uid, const std::string& name) {
    std::string pattern = (std::filesystem::temp_directory_path() / "sodam-groups-XXXXXX").string();
    directory = ::mkdtemp(pattern.data());
    FileKeychain keychain(directory);
    keychain.write(Keychain::refreshAccount,
                   server.with([&](CloudDouble& s) { return s.addUser(uid); }));
    keychain.write(Keychain::userAccount, toJson(CloudUser{uid, name, "google", {}}).dump());
  }
  ~Person() { std::filesystem::remove_all(directory); }

  // Runs one command in a fresh session, as the program does; gives the exit status.
  int run(testing::DoubleServer& server, std::vector<std::string> words) {
    out.str("");
    err.str("");
    CloudSession session(directory, CloudConfig::loopback(server.port()), [](const auto&) {});
    return runGroupSocial(session, directory, words, out, err);
  }

  std::filesystem::path directory;
  std::ostringstream out;
  std::ostringstream err;
};

std::string codeIn(const std::string& text) {
  const auto at = text.find("초대 코드 ");
  return at == std::string::npos ? "" : text.substr(at + std::string("초대 코드 ").size(), 9);
}

TEST(GroupSocialCommand, CreateJoinStatusAndCloseOverLoopback) {
  testing::DoubleServer server;
  Person me(server, "me", "나");
  Person jun(server, "jun", "준");

  ASSERT_EQ(me.run(server, {"create", "아침 스터디"}), 0) << me.err.str();
  const std::string code = codeIn(me.out.str());
  ASSERT_EQ(code.size(), 9u) << me.out.str();
  EXPECT_NE(me.out.str().find("/join.html?code="), std::string::npos);

  EXPECT_EQ(jun.run(server, {"join", "0000-0000"}), 1);
  EXPECT_EQ(jun.err.str(), "sodamjari: 그 코드의 모임을 찾지 못했어요\n");
  ASSERT_EQ(jun.run(server, {"join", code}), 0) << jun.err.str();
  EXPECT_EQ(jun.out.str(), "모임에 들어갔어요: 아침 스터디\n");

  ASSERT_EQ(me.run(server, {"list"}), 0);
  EXPECT_EQ(me.out.str(), "아침 스터디 · 코드 " + code + " · 멤버 2명 · 내가 만든 모임\n");
  ASSERT_EQ(jun.run(server, {"status"}), 0);
  EXPECT_NE(jun.out.str().find("나 · 꺼져 있어요 (자리에 없어요)"), std::string::npos)
      << jun.out.str();
  EXPECT_NE(jun.out.str().find("오늘 이 모임 집중 순위: 1. 나 0분 1. 준 0분"), std::string::npos)
      << jun.out.str();

  ASSERT_EQ(me.run(server, {"leave"}), 0);
  EXPECT_EQ(me.out.str(), "모임을 닫았어요: 아침 스터디\n");
  ASSERT_EQ(jun.run(server, {"list"}), 0);
  EXPECT_EQ(jun.out.str(),
            "아직 모임이 없어요\n모임을 만들어 친구에게 여덟 자리 코드를 보내거나, 받은 코드로 "
            "들어가요.\n");
}

TEST(GroupSocialCommand, ASignedOutUserIsToldToSignIn) {
  testing::DoubleServer server;
  Person nobody(server, "x", "x");
  std::filesystem::remove(nobody.directory / FileKeychain::fileName);
  EXPECT_EQ(nobody.run(server, {"list"}), 1);
  EXPECT_EQ(nobody.err.str(), "sodamjari: 로그인이 필요해요 (sodamjari group signin)\n");
}

}  // namespace
}  // namespace sodam
