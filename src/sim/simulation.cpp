#include "sim/simulation.h"

#include <algorithm>
#include <cmath>

#include "posture/baseline_store.h"
#include "support/korean_format.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {
using Field = ScenarioChange::Field;
constexpr double stepSeconds = 0.5;
// While the machine sleeps nothing reacts to the sitter, so time goes on in
// the work-life tracker's own ticks, up to the next event.
constexpr double asleepStepSeconds = 30;
}  // namespace

Simulation::Simulation(Scenario scenario, Defaults& defaults, Calendar calendar, Date day,
                       Transcript::Sink sink, Options options)
    : scenario_(std::move(scenario)),
      options_(std::move(options)),
      defaults_(defaults),
      calendar_(std::move(calendar)),
      midnight_(calendar_.startOfDay(day)),
      clock_(midnight_ + scenario_.startSeconds),
      scheduler_(clock_),
      machine_(scheduler_, clock_),
      transcript_(clock_, calendar_, std::move(sink)),
      lock_(Lockdown::engage(options_.confinement ? *options_.confinement : confinement_,
                             scheduler_)),
      link_(machine_.cameras.link(scheduler_)) {
  Store store(defaults_, clock_, calendar_);
  if (scenario_.fresh) {
    BaselineStore::write(defaults_, std::nullopt);
    store.setGuideDone(false);
  }
  if (auto live = options_.live ? options_.live : scenario_.live) {
    store.setCheckMode(*live ? CheckMode::live : CheckMode::interval);
  }
  if (options_.sensitivity) store.setSensitivity(*options_.sensitivity);
  if (options_.style) store.setAlertStyle(*options_.style);
  machine_.sitter.setNoise(0.5, 2026);
  AppDelegate::Platform platform{machine_.camera,
                                 machine_.camera,
                                 machine_.access,
                                 nullptr,
                                 machine_.queue,
                                 machine_.queue,
                                 machine_.lidDevice(),
                                 machine_.queue,
                                 machine_.power,
                                 defaults_,
                                 transcript_,
                                 transcript_,
                                 transcript_,
                                 transcript_,
                                 options_.process ? *options_.process : quietProcess_,
                                 clock_,
                                 scheduler_,
                                 calendar_,
                                 std::nullopt,
                                 nullptr,
                                 &machine_.cameras,
                                 &machine_.cameras,
                                 link_.get()};
  if (options_.group) {
    room_ = std::make_unique<StudyRoom>(scheduler_, clock_, calendar_, midnight_);
    platform.cloud.emplace(room_->cloud());
  }
  app_ = std::make_unique<AppDelegate>(*lock_, std::move(platform));
  followFocus();
}

// The application goes quietly: what it does on its way out is no part of the day.
Simulation::~Simulation() {
  app_->watcher().onChange.unsubscribe(focusTold_.watcherToken);
  app_->focus().onUpdate.unsubscribe(focusTold_.focusToken);
}

Date Simulation::dayToSimulate(Defaults& defaults, const Calendar& calendar, Date today) {
  constexpr double trustedAhead = 86'400;
  const ManualClock clock(today);
  const PostureLog log(defaults, clock, calendar);
  const Date todayStart = calendar.startOfDay(today);
  std::optional<Date> last;
  for (const auto& entry : log.entries()) {
    if (entry.t <= today + trustedAhead && (!last || entry.t > *last)) last = entry.t;
  }
  if (!last || calendar.startOfDay(*last) < todayStart) return todayStart;
  const Date tomorrow = calendar.addingDays(todayStart, 1).value_or(todayStart);
  return std::min(calendar.addingDays(calendar.startOfDay(*last), 1).value_or(todayStart),
                  tomorrow);
}

Date Simulation::dayStart(int day) const {
  return calendar_.addingDays(midnight_, day).value_or(midnight_ + day * 86400.0);
}

Date Simulation::momentOf(const ScenarioEvent& event) const {
  return dayStart(event.day) + event.atSeconds;
}

Date Simulation::end() const {
  return dayStart(scenario_.days - 1) + scenario_.endSeconds;
}

SimulationSummary Simulation::run() {
  std::size_t next = 0;
  const auto& events = scenario_.events;
  while (next < events.size() && momentOf(events[next]) <= clock_.now()) {
    apply(events[next++]);
  }
  watchTheDay();
  watchTheCompanion();
  app_->finishLaunching(false);
  if (room_) room_->open(*app_, transcript_);
  bool stopped = false;
  while (clock_.now() < end() && !stopped) {
    while (next < events.size() && momentOf(events[next]) <= clock_.now()) {
      apply(events[next++]);
    }
    const Date until = next < events.size() ? std::min(momentOf(events[next]), end()) : end();
    step(asleep_ ? std::clamp(until - clock_.now(), stepSeconds, asleepStepSeconds) : stepSeconds);
    stopped = options_.stopRequested && options_.stopRequested();
  }
  auto summary = summarize();
  summary.stopped = stopped;
  defaults_.flush();
  return summary;
}

void Simulation::step() {
  step(stepSeconds);
}

void Simulation::step(double seconds) {
  updateIdle();
  scheduler_.advance(seconds);
  machine_.cameras.poll();
  watchTheScreen();
  watchTheDay();
  watchTheCompanion();
  actLikeAUser();
  takeNudge();
  stretchAlong();
  studyLikeAUser();
  if (room_) room_->step();
  if (options_.speed && *options_.speed > 0 && options_.sleep) {
    // In something like real time the records are written as they change.
    defaults_.flush();
    options_.sleep(seconds / *options_.speed);
  }
}

// No input while the chair is empty or the user reads on paper; otherwise
// the user types, and the machine's idle time stays near zero.
void Simulation::updateIdle() {
  const Date now = clock_.now();
  double idle = 0;
  if (leftChairAt_) idle = now - *leftChairAt_;
  if (inputPauseSince_) idle = std::max(idle, now - *inputPauseSince_);
  machine_.power.idle = idle;
}

void Simulation::watchTheScreen() {
  const auto& report = app_->monitor().report();
  if (report && report->time != lastReport_) {
    lastReport_ = report->time;
    transcript_.say("마지막 확인: " + Fmt::clock(report->time, calendar_) + " · " +
                    report->outcome.text());
  }
  const long long tenths = roundedInt(app_->blur().level() * 10);
  if (tenths != blurTenths_) {
    blurTenths_ = tenths;
    transcript_.say(format("화면 흐림 %.1f", static_cast<double>(tenths) / 10));
  }
}

void Simulation::actLikeAUser() {
  const Date now = clock_.now();
  if (app_->alerting() && !sawAlert_) sitUpAt_ = now + reactionSeconds;
  sawAlert_ = app_->alerting();
  if (sitUpAt_ && now >= *sitUpAt_) {
    sitUpAt_.reset();
    SitterPosture& p = machine_.sitter.posture;
    const double distance = p.distanceCm;
    p = SitterPosture{};
    p.distanceCm = distance;
    transcript_.say("(앉은 사람이 자세를 바로잡아요)");
  }
  GuideModel* guide = app_->guide();
  if (!guide) return;
  using State = GuideModel::Learn::State;
  const auto& learn = guide->learn();
  if (learn.is(State::done)) {
    guide->go(GuideModel::Step::done);
    guide->finish();
  } else if (guide->step() != GuideModel::Step::learn) {
    guide->go(GuideModel::Step::learn);
  } else if (learn.is(State::idle) || learn.is(State::failed) || learn.is(State::concern)) {
    if (learn.is(State::failed)) transcript_.say("안내: " + learn.message);
    guide->startLearning();
  }
}

// The stand nudge's pill, clicked once when the scenario says so.
void Simulation::takeNudge() {
  const auto& pill = app_->pills().current();
  if (!takesNudge_ || !pill || pill->detail != "같이 스트레칭할래요? 누르면 3분 루틴을 시작해요") {
    return;
  }
  takesNudge_ = false;
  transcript_.say("(앉은 사람이 알약을 눌러요)");
  app_->pills().click();
}

// A session on the panel has the sitter follow it, and its course told; a
// finished one is looked at and closed.
void Simulation::stretchAlong() {
  CoachSession* session = app_->panelModel().session();
  if (session != followed_) {
    narrator_.reset();
    follower_.reset();
    doneAt_.reset();
    followed_ = session;
    if (!session) return;
    follower_ = std::make_unique<StretchFollower>(
        machine_.sitter, [this] { return app_->panelModel().session(); }, scheduler_, clock_,
        options_.follower);
    narrator_ = std::make_unique<CoachNarrator>(
        *session, [this](const std::string& line) { transcript_.say(line); });
  }
  if (!session || !session->phase().is(CoachSession::Phase::Kind::done)) return;
  if (!doneAt_) {
    doneAt_ = clock_.now();
    stretchSummary_ = CoachNarrator::summary(*session);
  } else if (clock_.now() - *doneAt_ >= doneLookSeconds) {
    narrator_.reset();
    follower_.reset();
    session->close();
  }
}

std::vector<std::string> Simulation::runStretch(std::optional<std::vector<Stretch>> items) {
  constexpr double launchSeconds = 2;
  constexpr double longestSeconds = 3600;
  app_->finishLaunching(false);
  const Date end = clock_.now() + longestSeconds;
  // A first run learns the posture through the guide before anything else.
  while (clock_.now() < end && (app_->guide() || !app_->monitor().baseline()))
    step();
  const Date start = clock_.now() + launchSeconds;
  while (clock_.now() < start)
    step();
  if (items) {
    app_->panelModel().start(std::move(*items));
  } else {
    app_->startRoutine();
  }
  bool began = false;
  while (clock_.now() < end) {
    step();
    began = began || followed_;
    if (began && !app_->panelModel().session()) break;
  }
  defaults_.flush();
  return stretchSummary_;
}

void Simulation::apply(const ScenarioEvent& event) {
  for (const auto& change : event.changes)
    apply(change);
}

void Simulation::apply(const ScenarioChange& change) {
  // While the sitter stretches, the scenario moves the posture it returns to.
  SitterPosture& p = follower_ ? follower_->basePosture() : machine_.sitter.posture;
  ScriptedPowerSource& power = machine_.power;
  const double v = change.value;
  switch (change.field) {
    case Field::present:
      machine_.sitter.present = v != 0;
      if (machine_.sitter.present) {
        leftChairAt_.reset();
      } else if (!leftChairAt_) {
        leftChairAt_ = clock_.now();
      }
      break;
    case Field::forward:
      p.forwardHeadCm = v;
      break;
    case Field::drop:
      p.headDropCm = v;
      break;
    case Field::pitch:
      p.headPitchDeg = v;
      break;
    case Field::roll:
      p.headRollDeg = v;
      break;
    case Field::yaw:
      p.headYawDeg = v;
      break;
    case Field::shoulder:
      p.shoulderRollDeg = v;
      break;
    case Field::lean:
      p.leanCm = v;
      break;
    case Field::distance:
      p.distanceCm = v;
      break;
    case Field::lid:
      machine_.sitter.laptop.lidDeg = v;
      break;
    case Field::lock:
      power.locked = true;
      if (app_) app_->screenLocked();
      break;
    case Field::unlock:
      power.locked = false;
      if (app_) app_->screenUnlocked();
      break;
    case Field::sleep:
      asleep_ = true;
      if (app_) app_->willSleep();
      break;
    case Field::wake:
      asleep_ = false;
      if (app_) app_->didWake();
      break;
    case Field::displayOff:
      if (app_) app_->screensSlept();
      break;
    case Field::displayOn:
      if (app_) app_->screensWoke();
      break;
    case Field::battery:
      power.batteryPercent = static_cast<int>(v);
      break;
    case Field::power:
      power.battery = v != 0;
      break;
    case Field::lowPower:
      power.lowPower = v != 0;
      break;
    case Field::idle:
      if (v > 0) {
        inputPauseSince_ = clock_.now() - v;
      } else {
        inputPauseSince_.reset();
      }
      break;
    case Field::check:
      if (app_) app_->monitor().checkNow();
      break;
    case Field::stretch:
      if (app_) app_->perform(MenuAction::startRoutine);
      break;
    case Field::nudge:
      takesNudge_ = v != 0;
      break;
    case Field::breathe:
      if (app_) app_->breatheNow();
      break;
    case Field::focus:
    case Field::habit:
    case Field::hands:
    case Field::doze:
      applyStudy(change);
      break;
    case Field::camera:
      if (change.text.empty()) {
        transcript_.say("(다른 프로그램이 카메라를 꺼요)");
        machine_.cameras.otherStops();
      } else {
        transcript_.say("(다른 프로그램이 카메라를 켜요: " + change.text + ")");
        machine_.cameras.otherStarts(change.text);
      }
      break;
  }
}

SimulationSummary Simulation::summarize() const {
  SimulationSummary s;
  if (room_) s.group = room_->summary();
  const Date now = clock_.now();
  const PostureLog& log = app_->log();
  const auto day = log.day(now);
  s.checks = day.checks;
  s.goodShare = day.ratio();
  for (const auto& entry : log.entries()) {
    if (!calendar_.isSameDay(entry.t, now)) continue;
    if (entry.k == PostureEntry::Kind::corrected) ++s.corrections;
    if (entry.k != PostureEntry::Kind::alert) continue;
    for (const auto& kind : entry.i)
      ++s.alertsByIssue[std::string(kind.title())];
  }
  const auto today = app_->work().today();
  s.seatedMinutes = today.seated();
  s.breaks = today.breaks();
  s.simulatedSeconds = end() - (midnight_ + scenario_.startSeconds);
  s.cameraSeconds = machine_.camera.secondsRunning();
  s.framesProcessed = machine_.camera.framesDetected();
  summarizeCompanion(s);
  s.focus = summarizeFocus();
  const Date runStart = midnight_ + scenario_.startSeconds;
  const auto& events = app_->watch().events();
  for (auto it = events.rbegin(); it != events.rend(); ++it) {
    if (it->time < runStart) continue;
    s.cameraUses.push_back(Fmt::clock(it->time, calendar_) + " " + it->app + " · " + it->summary());
  }
  return s;
}

std::vector<std::string> SimulationSummary::lines() const {
  std::vector<std::string> out;
  out.push_back("── 요약 ──");
  std::string checksLine = format("확인 %d번", checks);
  if (goodShare) checksLine += format(" · 바른 자세 %lld%%", roundedInt(*goodShare * 100));
  out.push_back(checksLine);
  std::string alerts = "알림";
  if (alertsByIssue.empty()) alerts += " 없음";
  bool first = true;
  for (const auto& [title, count] : alertsByIssue) {
    alerts += format("%s %s %d번", first ? ":" : ",", title.c_str(), count);
    first = false;
  }
  out.push_back(alerts);
  out.push_back(format("바로잡음 %d번", corrections));
  out.push_back("앉은 시간 " + hm(seatedMinutes) + format(" · 쉬는 시간 %d번", breaks));
  out.push_back(format("카메라 %.1f%% 켜짐 (%.0f초) · 처리한 프레임 %d장", cameraShare() * 100,
                       cameraSeconds, framesProcessed));
  addCompanionLines(out);
  if (focus) {
    std::string line = "집중 " + hm(focus->minutes);
    for (std::size_t i = 0; i < focus->habits.size(); ++i) {
      line += (i == 0 ? " · " : ", ") + focus->habits[i].first +
              format(" %d번", focus->habits[i].second);
    }
    out.push_back(line);
    out.push_back(
        format("집중코치 카메라: 초당 %.1f장 분석 · 사람 윤곽 %lld%% · 손과 몸 %lld%% · "
               "휴대폰 확인 %lld%%",
               focus->framesPerSecond, roundedInt(focus->maskShare * 100),
               roundedInt(focus->bodyShare * 100), roundedInt(focus->sceneShare * 100)));
  }
  if (!cameraUses.empty()) {
    out.push_back("다른 앱의 카메라 사용:");
    for (const auto& use : cameraUses)
      out.push_back("  " + use);
  }
  out.insert(out.end(), group.begin(), group.end());
  return out;
}

}  // namespace sodam
