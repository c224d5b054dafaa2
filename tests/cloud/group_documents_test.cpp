#include "cloud/group_documents.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

using Fields = Firestore::Fields;

TEST(GroupDocuments, AMemberReadsLenientlyAndANegativeShareIsNone) {
  const Member m = GroupDocuments::member({"groups/g/members/u1",
                                           {{"state", "napping"},
                                            {"good", std::int64_t{0}},
                                            {"weekGood", -1.0},
                                            {"focus", 41.9},
                                            {"turtle", "3"},
                                            {"mode", 1},
                                            {"look", Fields{{"hair", 4}, {"skin", 2.0}}}}});
  EXPECT_EQ(m.id, "u1");
  EXPECT_EQ(m.name, "친구");
  EXPECT_EQ(m.state, MateState::offline) << "an unknown word";
  EXPECT_EQ(m.good, 0.0) << "0 stays 0";
  EXPECT_EQ(m.weekGood, std::nullopt);
  EXPECT_EQ(m.focus, 41) << "a whole number accepts a double, truncated";
  EXPECT_EQ(m.turtle, 0) << "text is no number";
  EXPECT_EQ(m.mode, UseMode::watch);
  EXPECT_EQ(m.look.hair, 4);
  EXPECT_EQ(m.look.skin, 2);
  EXPECT_EQ(m.at, Date::distantPast());
}

TEST(GroupDocuments, SessionsWithoutIdOrStartAreDroppedAndTheRestRoundTrip) {
  GroupSession kept = GroupSession::draft(Date{800'000'000});
  kept.title = "수학";
  kept.minutes = 90;
  kept.repeats = GroupSession::Repeat::weekdays;
  const Fields noStart{{"id", "x"}, {"title", "빈 시작"}};
  const Fields noId{{"start", Date{1}}};
  Fields unknown = *GroupDocuments::session(kept).fields();
  unknown["repeat"] = "yearly";
  unknown.erase("minutes");
  const StudyGroup group =
      GroupDocuments::group({"groups/g1",
                             {{"name", "모임 A"},
                              {"members", Firestore::Array{"a", 3, "b"}},
                              {"sessions", Firestore::Array{*GroupDocuments::session(kept).fields(),
                                                            noStart, noId, unknown}}}});
  EXPECT_EQ(group.id, "g1");
  EXPECT_EQ(group.members, (std::vector<std::string>{"a", "b"}));
  ASSERT_EQ(group.sessions.size(), 2u);
  EXPECT_EQ(group.sessions[0], kept);
  EXPECT_EQ(group.sessions[1].repeats, GroupSession::Repeat::none);
  EXPECT_EQ(group.sessions[1].minutes, 60);
}

}  // namespace
}  // namespace sodam
