#include "sim/study_room.h"

#include <cmath>

#include "support/text.h"
#include "support/weak_call.h"

namespace sodam {

namespace {
constexpr double tickSeconds = 10;
const char* groupName = "아침 스터디";

MemoryKeychain signedIn(CloudDouble& service, const std::string& uid, const std::string& name) {
  MemoryKeychain keychain;
  keychain.write(Keychain::refreshAccount, service.addUser(uid));
  keychain.write(Keychain::userAccount, toJson(CloudUser{uid, name, "google", {}}).dump());
  return keychain;
}
}  // namespace

// One friend's program: its own session on the double, and a day of beats.
struct StudyRoom::Friend {
  Friend(StudyRoom& room, const std::string& uid, const std::string& name, double good,
         std::vector<Beat> beats)
      : keychain(signedIn(room.service_, uid, name)),
        http(room.service_, room.scheduler_),
        auth(CloudConfig::loopback(1), {http, keychain, room.clock_, room.scheduler_,
                                        [] { return nullptr; }, [](const std::string&) {}, [] {}}),
        store(auth, http),
        social({auth, store, power, defaults, room.clock_, room.scheduler_, room.calendar_}),
        good(good),
        beats(std::move(beats)) {}

  // The beat that holds at `now`, or "gone" before the first.
  std::string beatAt(Date now, const StudyRoom& room) const {
    std::string state = "gone";
    for (const Beat& beat : beats) {
      const auto at = room.calendar_.date(
          {room.calendar_.components(room.day_).year, room.calendar_.components(room.day_).month,
           room.calendar_.components(room.day_).day, beat.hour, beat.minute, 0});
      if (at && *at <= now) state = beat.state;
    }
    return state;
  }

  void tick(Date now, const StudyRoom& room) {
    const std::string beat = beatAt(now, room);
    if (beat == "gone") return;
    MyStatus status;
    status.state = beat == "hidden" ? MateState(MateState::desk) : MateState::fromRaw(beat);
    if (status.state == MateState::focus) focusSeconds += tickSeconds;
    if (status.state == MateState::turtle && lastState != MateState::turtle) ++turtles;
    lastState = status.state;
    status.focus = static_cast<int>(focusSeconds / 60);
    status.good = good;
    status.checks = static_cast<int>(focusSeconds / 600);
    status.turtle = turtles;
    status.weekGood = good;
    status.weekFocus = status.focus;
    social.publish(status, beat != "hidden");
  }

  MemoryKeychain keychain;
  CloudDouble::Http http;
  CloudAuth auth;
  Firestore store;
  ScriptedPowerSource source;
  Power power{source};
  MemoryDefaults defaults;
  Social social;
  double good;
  std::vector<Beat> beats;
  double focusSeconds = 0;
  int turtles = 0;
  MateState lastState = MateState::offline;
  Timer timer;
};

StudyRoom::StudyRoom(ManualScheduler& scheduler, ManualClock& clock, const Calendar& calendar,
                     Date day)
    : scheduler_(scheduler),
      clock_(clock),
      calendar_(calendar),
      day_(day),
      http_(service_, scheduler),
      keychain_(signedIn(service_, "me", "나")) {
  friends_.push_back(std::make_unique<Friend>(*this, "min", "민", 0.9,
                                              std::vector<Beat>{{9, 0, "focus"},
                                                                {10, 30, "phone"},
                                                                {10, 42, "focus"},
                                                                {12, 0, "away"},
                                                                {13, 0, "focus"},
                                                                {15, 0, "drowsy"},
                                                                {15, 8, "focus"},
                                                                {18, 0, "gone"}}));
  friends_.push_back(std::make_unique<Friend>(*this, "jun", "준", 0.62,
                                              std::vector<Beat>{{9, 30, "desk"},
                                                                {11, 0, "turtle"},
                                                                {11, 6, "focus"},
                                                                {12, 10, "away"},
                                                                {13, 20, "focus"},
                                                                {14, 0, "slouch"},
                                                                {14, 5, "focus"},
                                                                {16, 0, "hidden"},
                                                                {17, 0, "desk"},
                                                                {18, 30, "gone"}}));
}

StudyRoom::~StudyRoom() = default;

AppDelegate::Platform::Cloud StudyRoom::cloud() {
  return {CloudConfig::loopback(1), http_, keychain_, [] { return nullptr; }};
}

void StudyRoom::open(AppDelegate& app, Transcript& transcript) {
  app_ = &app;
  transcript_ = &transcript;
  Social* social = app.social();
  if (!social) return;
  social->create(groupName, [this](CloudResult<StudyGroup> made) {
    if (!made.ok()) {
      transcript_->say("모임을 만들지 못했어요: " + made.error().text());
      return;
    }
    joined(made.value());
  });
}

void StudyRoom::joined(const StudyGroup& group) {
  transcript_->say("(앉은 사람이 「" + group.name +
                   "」 모임을 만들고 친구들에게 초대 코드를 보내요: " + group.codeText() + ")");
  for (auto& f : friends_) {
    Friend* one = f.get();
    one->social.join(group.code, [this, one](Social::Joined joined) {
      if (!joined.group) return;
      transcript_->say(one->auth.user()->name + "이 모임에 들어왔어요");
      one->timer = scheduler_.schedule({tickSeconds, tickSeconds, 0},
                                       [this, one] { one->tick(clock_.now(), *this); });
    });
  }
}

void StudyRoom::step() {
  if (app_) tell();
}

// Each friend's state as the user's program sees it after each refresh, told
// on a change; while the screen is locked nothing is refreshed, or told.
void StudyRoom::tell() {
  const Social* social = app_->social();
  if (!social || social->lastRefresh() == toldRefresh_) return;
  toldRefresh_ = social->lastRefresh();
  const Date now = clock_.now();
  for (const Member& member : social->friends()) {
    if (member.id == social->me()) continue;
    const MateState live = member.live(now);
    const auto told = told_.find(member.id);
    if (told != told_.end() && told->second == live) continue;
    told_.insert_or_assign(member.id, live);
    transcript_->say("모임: " + member.name + " · " + std::string(live.title()));
  }
}

std::vector<std::string> StudyRoom::summary() const {
  if (!app_) return {};
  const RankingPage page = app_->rankingPage("", RankingPage::Period::today);
  std::string focus = "모임 랭킹 · 오늘 집중:";
  for (const auto& row : page.focus)
    focus += format(" %d. %s %s", row.rank, row.name.c_str(), row.value.c_str());
  std::string good = "모임 랭킹 · 바른 자세:";
  for (const auto& row : page.good)
    good += format(" %d. %s %s", row.rank, row.name.c_str(), row.value.c_str());
  return {focus, good};
}

}  // namespace sodam
