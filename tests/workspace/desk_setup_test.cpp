#include "workspace/desk_setup.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "platform/defaults.h"
#include "platform/store.h"
#include "workspace/desk_fields.h"

namespace sodam {
namespace {

using nlohmann::json;

TEST(DeskKind, TitlesAndWhatEachKindHas) {
  std::string titles;
  for (DeskKind kind : DeskKind::all())
    titles += std::string(kind.title()) + "|";
  EXPECT_EQ(titles,
            "노트북만|노트북 거치대|모니터만|모니터 두 대|노트북과 모니터|서서 "
            "일하기|카페·식탁|소파·침대|");
  // The laptop beside a monitor is not the screen of record.
  EXPECT_FALSE(DeskKind(DeskKind::laptopMonitor).usesLaptop());
  EXPECT_TRUE(DeskKind(DeskKind::laptopMonitor).hasLaptop());
  EXPECT_TRUE(DeskKind(DeskKind::sofa).raisable());
  EXPECT_FALSE(DeskKind(DeskKind::cafe).adjustableSeat());
  EXPECT_FALSE(DeskKind(DeskKind::standing).seated());
  EXPECT_TRUE(DeskKind(DeskKind::sofa).seated());
  EXPECT_FALSE(DeskKind(DeskKind::sofa).chair());
  EXPECT_EQ(DeskKind::fromRaw("dualMonitor"), DeskKind::dualMonitor);
  EXPECT_EQ(DeskKind::fromRaw("노트북만"), std::nullopt);
}

struct Switch {
  DeskKind to;
  double seat, desk, depth, stand, lid, tilt, gap, offset, recline;
};

TEST(DeskSetup, SwitchingBringsEachKindsFurniture) {
  DeskSetup start;  // a laptop with a changed lid, tilt and gap
  start.lid = 120;
  start.tilt = 15;
  start.gap = 20;
  start.depth = 50;
  start.cushion = 4;
  start.recline = 10;
  start.offset = 7;
  start.footrest = 6;
  const Switch table[] = {
      {DeskKind::laptop, 45, 72, 34, 0, 110, 15, 12, 0, 0},
      {DeskKind::laptopStand, 45, 72, 42, 14, 105, 15, 12, 0, 0},
      {DeskKind::monitor, 45, 72, 62, 10, 120, 8, 12, 0, 0},
      {DeskKind::dualMonitor, 45, 72, 62, 10, 120, 8, 12, 0, 0},
      {DeskKind::laptopMonitor, 45, 72, 62, 10, 120, 8, 12, -10, 0},
      {DeskKind::standing, 45, 100, 58, 10, 120, 8, 10, 0, 0},
      {DeskKind::cafe, 45, 74, 34, 0, 110, 15, 12, 0, 0},
      {DeskKind::sofa, 42, 72, 50, 0, 115, 15, 20, 0, 18},
  };
  for (const Switch& row : table) {
    const DeskSetup s = start.switched(row.to);
    SCOPED_TRACE(std::string(row.to.raw()));
    EXPECT_EQ(s.kind, row.to);
    EXPECT_EQ(s.seat, row.seat);
    EXPECT_EQ(s.desk, row.desk);
    EXPECT_EQ(s.depth, row.depth);
    EXPECT_EQ(s.stand, row.stand);
    EXPECT_EQ(s.lid, row.lid);
    EXPECT_EQ(s.tilt, row.tilt);
    EXPECT_EQ(s.gap, row.gap);
    EXPECT_EQ(s.offset, row.offset);
    EXPECT_EQ(s.recline, row.recline);
    EXPECT_EQ(s.cushion, 0);
    EXPECT_EQ(s.footrest, row.to == DeskKind::sofa ? 0 : 6);
  }
  // Leaving a standing desk or a sofa sets the seat and desk back as well.
  const DeskSetup standing = start.switched(DeskKind::standing);
  EXPECT_EQ(standing.switched(DeskKind::monitor).desk, 72);
  DeskSetup sofa = start.switched(DeskKind::sofa);
  EXPECT_EQ(sofa.switched(DeskKind::laptopStand).seat, 45);
  // Leaving a cafe sets its table back; between ordinary desks it stays.
  DeskSetup cafe = start.switched(DeskKind::cafe);
  EXPECT_EQ(cafe.switched(DeskKind::laptop).desk, 72);
  cafe.desk = 80;
  EXPECT_EQ(DeskSetup(cafe).switched(DeskKind::monitor).desk, 72);
  DeskSetup monitor = start.switched(DeskKind::monitor);
  monitor.desk = 68;
  EXPECT_EQ(monitor.switched(DeskKind::laptop).desk, 68);
}

TEST(DeskSetup, StoresAsJsonAndReadsWhatItCan) {
  DeskSetup s = DeskSetup().switched(DeskKind::laptopMonitor);
  s.feet = Feet::footrest;
  s.slump = 2.5;
  s.analyzedAt = Date{700000000};
  s.shape = ScreenShape::ultra;
  const json stored = s.toJson();
  EXPECT_EQ(stored["kind"], "laptopMonitor");
  EXPECT_EQ(stored["shape"], "ultra");
  EXPECT_EQ(stored["feet"], "footrest");
  EXPECT_EQ(stored["rev"], 2);
  EXPECT_FALSE(stored.contains("sitFit"));
  EXPECT_EQ(DeskSetup::fromJson(stored), s);

  // An older record without most fields reads them as their defaults.
  const auto old = DeskSetup::fromJson(json{{"kind", "monitor"}, {"desk", 70}});
  ASSERT_TRUE(old);
  EXPECT_EQ(old->kind, DeskKind::monitor);
  EXPECT_EQ(old->desk, 70);
  EXPECT_EQ(old->seat, 45);
  EXPECT_EQ(old->rev, std::nullopt);
  // A field of another type or an unknown case makes it unreadable.
  EXPECT_FALSE(DeskSetup::fromJson(json{{"desk", "tall"}}));
  EXPECT_FALSE(DeskSetup::fromJson(json{{"kind", "hammock"}}));
  EXPECT_FALSE(DeskSetup::fromJson(json{{"feet", 1}}));
}

TEST(DeskSetup, EachPlaceKeepsItsOwnAndAnUnreadableOneIsTheDefault) {
  MemoryDefaults defaults;
  EXPECT_EQ(DeskSetup::saved(defaults), DeskSetup());
  DeskSetup home = DeskSetup().switched(DeskKind::dualMonitor);
  home.save(defaults);
  DeskSetup office = DeskSetup().switched(DeskKind::standing);
  office.save(defaults, "6F1C");
  EXPECT_EQ(DeskSetup::saved(defaults), home);
  EXPECT_EQ(DeskSetup::saved(defaults, "6F1C"), office);
  EXPECT_TRUE(defaults.data("deskSetup.6F1C").value);
  defaults.setJsonData(StoreKey::deskSetup, json{{"seat", "high"}});
  EXPECT_EQ(DeskSetup::saved(defaults), DeskSetup());
}

TEST(DeskSetup, ABlendMovesTheNumbersAndTakesTheRestFromTheTarget) {
  DeskSetup a;
  a.slump = 1;
  DeskSetup b = a.switched(DeskKind::monitor);
  b.slump = 3;
  b.sitFit = 2;
  const DeskSetup half = DeskSetup::lerp(a, b, 0.5);
  EXPECT_EQ(half.kind, DeskKind::monitor);
  EXPECT_DOUBLE_EQ(half.depth, (34 + 62) / 2.0);
  EXPECT_DOUBLE_EQ(half.stand, 5);
  EXPECT_DOUBLE_EQ(*half.slump, 2);
  EXPECT_DOUBLE_EQ(*half.sitFit, 2);  // only b has one
  EXPECT_EQ(DeskSetup::lerp(a, b, 1), b);
}

TEST(DeskFields, EveryKindShowsWhatItHasAndValuesStayInRange) {
  auto keys = [](DeskKind kind) {
    std::string out;
    for (const DeskField* f : deskFieldsOf(kind))
      out += std::string(f->key) + " ";
    return out;
  };
  EXPECT_EQ(keys(DeskKind::laptop),
            "height seat cushion footrest recline gap desk depth lid laptopSize ");
  EXPECT_EQ(keys(DeskKind::standing), "height gap desk depth stand tilt monitorSize ");
  EXPECT_EQ(keys(DeskKind::sofa), "height recline stand lid laptopSize ");
  EXPECT_EQ(keys(DeskKind::laptopMonitor),
            "height seat cushion footrest recline gap desk depth stand lid tilt laptopSize "
            "monitorSize offset ");
  DeskSetup s;
  findDeskField("seat")->set(s, 200);
  EXPECT_EQ(s.seat, 70);
  EXPECT_EQ(findDeskField("armrest"), nullptr);
}

}  // namespace
}  // namespace sodam
