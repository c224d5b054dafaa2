#include "companion/pill_look.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "companion/mate_look.h"

namespace sodam {
namespace {

struct LookStore {
  MemoryDefaults defaults;
  ManualClock clock;
  Calendar calendar;
  Store store{defaults, clock, calendar};
};

TEST(PillLook, EachSettingReadsItsRawOrderAndAnUnknownValueIsTheDefault) {
  LookStore s;
  EXPECT_EQ(PillLook::current(s.store), PillLook{});
  s.defaults.setInteger(StoreKey::pillEars, 11);
  s.defaults.setInteger(StoreKey::pillTrim, 15);
  s.defaults.setInteger(StoreKey::pillBody, 11);
  s.defaults.setInteger(StoreKey::pillEyes, 10);
  s.defaults.setInteger(StoreKey::pillFace, 7);
  s.defaults.setInteger(StoreKey::pillPattern, 5);
  EXPECT_EQ(PillLook::current(s.store),
            (PillLook{PillEars::unicorn, PillTrim::santa, PillBody::slate, PillEyeColor::galaxy,
                      PillFace::sparkle, PillPattern::checker}));

  s.defaults.setInteger(StoreKey::pillEars, 99);
  s.defaults.setInteger(StoreKey::pillTrim, 16);
  s.defaults.setInteger(StoreKey::pillBody, -1);
  s.defaults.setInteger(StoreKey::pillEyes, 11);
  s.defaults.setInteger(StoreKey::pillFace, 8);
  s.defaults.setInteger(StoreKey::pillPattern, 6);
  EXPECT_EQ(PillLook::current(s.store), PillLook{});
}

TEST(PillLook, AnOptionOpensAtItsLevelAndAHatNeedsRoom) {
  EXPECT_EQ(lookTitle(PillEars::antlers), "사슴뿔");
  EXPECT_EQ(lookLevel(PillEars::unicorn), 7);
  EXPECT_EQ(lookTitle(PillTrim::chef), "요리사 모자");
  EXPECT_EQ(lookTitle(PillTrim::wizard), "마법사 모자");
  EXPECT_EQ(lookLevel(PillPattern::checker), 4);  // raw value less one from the stars on
  EXPECT_EQ(lookLevel(PillEyeColor::snow), 1);    // uneven on purpose
  EXPECT_EQ(lookTitle(PillFace::hearts), "하트 볼");

  LookStore s;
  EXPECT_FALSE(chooseLook(s.store, PillTrim::crown, 3));
  EXPECT_FALSE(s.defaults.contains(StoreKey::pillTrim));
  EXPECT_TRUE(chooseLook(s.store, PillTrim::crown, 4));
  EXPECT_TRUE(chooseLook(s.store, PillEyeColor::peach, 2));
  const PillLook look = PillLook::current(s.store);
  EXPECT_EQ(look.trim, PillTrim::crown);
  EXPECT_EQ(look.eyes, PillEyeColor::peach);
  EXPECT_TRUE(look.hasTop());
  EXPECT_FALSE(PillLook{}.hasTop());
}

TEST(MateLook, TheUsersLookRoundTripsAndDamageReadsAsTheDefault) {
  MemoryDefaults defaults;
  EXPECT_EQ(MateLook::mine(defaults), MateLook{});
  const MateLook look{2, 5, 1, 3, 4, 0, 2, 1};
  MateLook::setMine(defaults, look);
  EXPECT_EQ(MateLook::mine(defaults), look);
  EXPECT_EQ(*defaults.jsonData(StoreKey::mateLook), nlohmann::json({{"skin", 2},
                                                                    {"hair", 5},
                                                                    {"hairColor", 1},
                                                                    {"shirt", 3},
                                                                    {"item", 4},
                                                                    {"eyes", 0},
                                                                    {"top", 2},
                                                                    {"face", 1}}));
  defaults.setJsonData(StoreKey::mateLook, nlohmann::json({{"skin", 2}}));
  EXPECT_EQ(MateLook::mine(defaults), MateLook{});
}

TEST(MateLook, TheSharedMapKeepsEveryFieldAndSamplesRepeatByThree) {
  const MateLook look{1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_EQ(MateLook::from(look.dictionary()), look);
  EXPECT_EQ(look.dictionary().at("hairColor"), 3);
  EXPECT_EQ(MateLook::from(std::nullopt), MateLook{});
  EXPECT_EQ(MateLook::from(MateLook::Dictionary{{"top", 4}}).top, 4);
  EXPECT_EQ(MateLook::sample(4), MateLook::sample(1));
  EXPECT_EQ(MateLook::sample(-2), MateLook::sample(1));
  EXPECT_NE(MateLook::sample(0), MateLook::sample(1));
  EXPECT_NE(MateLook::sample(1), MateLook::sample(2));
}

}  // namespace
}  // namespace sodam
