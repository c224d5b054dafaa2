#include <gtest/gtest.h>

#include "companion/companion_harness.h"
#include "companion/dorani.h"
#include "companion/dorani_poke.h"

namespace sodam {
namespace {

using Kind = PostureEntry::Kind;
using Mood = PillEyes::Mood;
using testing::CompanionHarness;

const Dorani::Watch watching{true, true, std::nullopt};

std::vector<std::string> texts(const std::vector<Dorani::Line>& lines) {
  std::vector<std::string> out;
  for (const auto& line : lines)
    out.push_back(line.text);
  return out;
}

bool says(const std::vector<Dorani::Line>& lines, const Dorani::Line& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

bool saysStarting(const std::vector<Dorani::Line>& lines, std::string_view start) {
  return std::any_of(lines.begin(), lines.end(),
                     [&](const Dorani::Line& line) { return line.text.rfind(start, 0) == 0; });
}

TEST(DoraniLines, WithoutABaselineOrWhileOffItSaysOneThing) {
  CompanionHarness h;
  h.clock.set(h.at(2026, 3, 10, 23, 30));
  const auto fresh = h.dorani().lines(Dorani::Watch{false, true, IssueKind::slouch});
  EXPECT_EQ(fresh, (std::vector<Dorani::Line>{
                       {"안녕하세요, 저는 도란이예요! 바른 자세를 먼저 알려 주면 옆에서 같이 "
                        "지켜볼게요.",
                        Mood::curious}}));
  const auto off = h.dorani().lines(Dorani::Watch{true, false, std::nullopt});
  EXPECT_EQ(
      off, (std::vector<Dorani::Line>{
               {"지금은 쉬는 중이에요. 자세 확인을 켜 주면 다시 지켜볼게요. 쿨쿨…", Mood::sleep}}));
}

TEST(DoraniLines, LateAtNightAfterAnHourSeatedTheStreakTheHourAndTheClockSpeakInOrder) {
  CompanionHarness h;
  h.clock.set(h.at(2026, 3, 10, 22, 29));
  h.sit(61);  // until 23:30
  const auto lines = h.dorani().lines(watching);
  const std::vector<std::string> expected{
      "벌써 61분째 앉아 있어요. 같이 일어나서 기지개 켜요!",
      "밤이 깊었어요. 저도 졸려요… 오늘은 여기까지 할까요?",
      "이번 주 가장 오래 앉아 있던 건 화요일 1시간 1분이에요. 50분마다 한 번씩 일어나요!",
      "'아는 사이'까지 40점 남았어요. 같이 힘내요!",
      // The 69th day of the year: 69 modulo 8 is 5.
      "휴대폰은 눈높이로 들고 봐요. 고개가 고마워해요.",
      "늦게까지 함께해요. 대신 목은 꼿꼿하게!",
  };
  EXPECT_EQ(texts(lines), expected);
  EXPECT_EQ(lines[0].mood, Mood::sleepy);
  EXPECT_EQ(lines.back().mood, Mood::sleepy);
}

TEST(DoraniLines, TheGoodShareIsPraisedFromEightyFivePercentAndWorriedUnderSixty) {
  struct Case {
    int good;
    int alerts;
    bool proud;
    bool worried;
  };
  for (const auto& c :
       {Case{17, 3, true, false}, Case{16, 4, false, false}, Case{6, 4, false, false},
        Case{5, 5, false, true}, Case{0, 4, false, false}}) {
    CompanionHarness h;
    h.record(Kind::good, c.good);
    h.record(Kind::alert, c.alerts, {IssueKind::forwardHead});
    const auto lines = h.dorani().lines(watching);
    EXPECT_EQ(saysStarting(lines, "오늘 바른 자세가 "), c.proud) << c.good << "/" << c.alerts;
    EXPECT_EQ(saysStarting(lines, "오늘은 거북목이 자주"), c.worried) << c.good << "/" << c.alerts;
  }
  CompanionHarness proud;
  proud.record(Kind::good, 17);
  proud.record(Kind::corrected, 3);
  EXPECT_TRUE(says(proud.dorani().lines(watching),
                   {"오늘 바른 자세가 100%예요. 제가 다 뿌듯해요!", Mood::love}));

  // The kind named most often, not the first one named, is the worry.
  CompanionHarness worried;
  worried.record(Kind::good, 2);
  worried.record(Kind::alert, 2, {IssueKind::slouch, IssueKind::forwardHead});
  worried.record(Kind::alert, 1, {IssueKind::forwardHead});
  EXPECT_TRUE(
      says(worried.dorani().lines(watching),
           {"오늘은 거북목이 자주 보였어요. 턱을 당겨 머리를 뒤로, 같이 해 봐요.", Mood::focus}));
}

TEST(DoraniLines, CorrectionsAwayChecksStretchesAndFocusEachHaveTheirLine) {
  CompanionHarness h;
  h.clock.set(h.at(2026, 3, 10, 14));
  h.record(Kind::corrected, 2);
  h.record(Kind::away, 2);
  auto lines = h.dorani().lines(watching);
  EXPECT_TRUE(says(lines, {"알림 받고 2번이나 바로 고쳤어요. 멋져요!", Mood::happy}));
  EXPECT_FALSE(saysStarting(lines, "오늘 2번은"));
  h.record(Kind::away, 1);
  lines = h.dorani().lines(watching);
  EXPECT_TRUE(says(lines, {"오늘 3번은 노트북 말고 다른 곳을 보고 있었어요. 휴대폰은 눈높이로 "
                           "들고 봐요!",
                           Mood::curious}));

  // Two hours seated without a stretch, then one stretch.
  h.sit(121);
  h.focusMinutes = 50;
  lines = h.dorani().lines(watching);
  EXPECT_TRUE(says(
      lines, {"오늘 2시간 1분 앉았는데 스트레칭은 아직이에요. 3분만 같이 해요!", Mood::curious}));
  EXPECT_TRUE(says(lines, {"오늘 50분 집중했어요. 꾸준함이 최고예요!", Mood::happy}));
  h.log.recordStretch({"neck"}, 180, 0.8);
  lines = h.dorani().lines(watching);
  EXPECT_TRUE(says(lines, {"오늘 스트레칭을 1번 했어요. 몸이 한결 가볍죠?", Mood::happy}));
  EXPECT_FALSE(saysStarting(lines, "오늘 2시간"));
}

TEST(DoraniLines, AnAlertComesFirstAndTheTopLevelHasNoStepToGo) {
  CompanionHarness h;
  h.bank({{"2026-01-01", 1800}});
  h.clock.set(h.at(2026, 3, 10, 9));
  const auto lines = h.dorani().lines(Dorani::Watch{true, true, IssueKind::slouch});
  EXPECT_EQ(lines.front(), (Dorani::Line{"앗, 구부정! 허리를 세우고 가슴을 펴요. 금방 풀릴 거예요.",
                                         Mood::focus}));
  EXPECT_FALSE(saysStarting(lines, "'"));
  EXPECT_EQ(lines.back(),
            (Dorani::Line{"좋은 아침이에요! 오늘도 허리 펴고 시작해요.", Mood::happy}));
}

TEST(DoraniLines, TheLastLineFollowsTheHour) {
  struct Case {
    int hour;
    std::string_view start;
    Mood mood;
  };
  for (const auto& c : {Case{4, "늦게까지", Mood::sleepy}, Case{5, "좋은 아침", Mood::happy},
                        Case{10, "좋은 아침", Mood::happy}, Case{11, "점심 먹고", Mood::looking},
                        Case{13, "점심 먹고", Mood::looking}, Case{14, "오후엔", Mood::looking},
                        Case{17, "오후엔", Mood::looking}, Case{18, "오늘 하루도", Mood::happy},
                        Case{22, "오늘 하루도", Mood::happy}, Case{23, "늦게까지", Mood::sleepy}}) {
    CompanionHarness h;
    h.clock.set(h.at(2026, 3, 10, c.hour, 59));
    const auto lines = h.dorani().lines(watching);
    EXPECT_EQ(lines.back().text.rfind(c.start, 0), 0u) << c.hour << ": " << lines.back().text;
    EXPECT_EQ(lines.back().mood, c.mood) << c.hour;
    EXPECT_EQ(saysStarting(lines, "밤이 깊었어요"), c.hour == 23 || c.hour == 4) << c.hour;
  }
}

TEST(DoraniPoke, QuickTapsBuildAComboAndTheReplyClearsAfterTheLastTap) {
  // From the reference date, so that 0.9 seconds on the clock are exactly the window.
  ManualClock clock{Date{}};
  ManualScheduler scheduler{clock};
  std::vector<std::size_t> counts;
  DoraniPoke poke(clock, scheduler, [&](std::size_t count) {
    counts.push_back(count);
    return count - 1;  // always the last entry of the list
  });
  EXPECT_EQ(poke.poke(), (Dorani::Line{"어깨 힘 빼요. 툭!", Mood::happy}));
  scheduler.advance(0.9);  // exactly the window: a new combo
  poke.poke();
  EXPECT_EQ(poke.combo(), 1);
  std::vector<Mood> moods;
  for (int tap = 2; tap <= 9; ++tap) {
    scheduler.advance(0.89);
    moods.push_back(poke.poke().mood);
  }
  EXPECT_EQ(moods, (std::vector<Mood>{Mood::wink, Mood::surprised, Mood::surprised, Mood::dizzy,
                                      Mood::dizzy, Mood::dizzy, Mood::pout, Mood::pout}));
  EXPECT_EQ(poke.reply(), (Dorani::Line{"칫, 모른 척할 거예요.", Mood::pout}));
  EXPECT_EQ(counts, (std::vector<std::size_t>{6, 6, 3, 3, 3, 3, 3, 3, 3, 3}));

  // The reply stands 2.6 seconds after the last tap, however long the combo.
  scheduler.advance(2.59);
  EXPECT_TRUE(poke.reply());
  scheduler.advance(0.02);
  EXPECT_FALSE(poke.reply());
}

}  // namespace
}  // namespace sodam
