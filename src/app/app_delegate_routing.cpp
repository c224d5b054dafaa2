// Where the components' reports end: the pill, the border, the blur and the
// companion's peek.
#include <cmath>

#include "app/app_delegate.h"
#include "support/numeric.h"
#include "support/text.h"
#include "support/weak_call.h"

namespace sodam {

namespace {
using Kind = Monitor::Outcome::Kind;
using Mood = PillEyes::Mood;

constexpr double peekPauseSeconds = 900;
constexpr double closerPauseSeconds = 600;
constexpr int breatheSeconds = 60;

}  // namespace

Pill AppDelegate::pill(std::string symbol, Theme tint, std::string title,
                       std::optional<std::string> detail) const {
  return Pill(now(), std::move(symbol), tint, std::move(title), std::move(detail));
}

void AppDelegate::show(Pill pill, std::optional<double> seconds, std::function<void()> action) {
  pills_.show(std::move(pill), seconds, std::move(action));
}

void AppDelegate::alert(const std::optional<Issue>& issue, bool corrected) {
  if (issue) {
    Pill next(now(), Pill::Art::fix(issue->kind), Theme::red, std::string(issue->kind.fix()),
              issue->detail);
    if (!alerting_) {
      alerting_ = true;
      severity_.reset();
      if (store_.alertStyle() == AlertStyle::border) border_.show();
    }
    // The same kind again leaves the pill alone, so its words don't jump.
    if (pills_.current() && pills_.current()->art == next.art) return;
    show(std::move(next), PillCenter::untilReplaced,
         weakCall(self_, [](AppDelegate& app) { app.startRoutine(); }));
    return;
  }
  if (!alerting_) return;
  alerting_ = false;
  border_.hide();
  blur_.hide();
  if (corrected) {
    show(pill("checkmark", Theme::green, "좋아요, 바른 자세예요"), 1.6);
  } else {
    pills_.hide();
  }
}

void AppDelegate::severity(double value) {
  if (!alerting_ || store_.alertStyle() != AlertStyle::blur) return;
  blur_.show(severity_.level(value));
}

void AppDelegate::phaseChanged(Monitor::Phase phase,
                               const std::optional<Monitor::Outcome>& outcome) {
  const bool idle = phase == Monitor::Phase::idle;
  if (idle && outcome) dorani_.refresh();
  if (phase == Monitor::Phase::relearning) {
    const int seconds = static_cast<int>(Monitor::relearnPrep + Monitor::relearnSpan);
    show(Pill(now(), Pill::Art::countdown(seconds), Theme::green, "바른 자세로 앉아 주세요",
              "화면을 보고 등을 펴면 기준을 다시 잡아요"),
         PillCenter::untilReplaced);
    return;
  }
  // Back from relearning to live watching: the countdown pill has no time
  // limit and must give way to the relearning's outcome.
  const bool countdownUp =
      pills_.current() && pills_.current()->art.kind() == Pill::Art::Kind::countdown;
  if (phase == Monitor::Phase::watching && countdownUp) {
    const auto& report = monitor_->report();
    const bool told =
        report && (report->outcome.is(Kind::relearned) ||
                   (report->outcome.is(Kind::relearnNeeded) && report->outcome.message()));
    if (told) {
      phaseChanged(Monitor::Phase::idle, report->outcome);
    } else {
      pills_.hide();
    }
    return;
  }
  if (idle && outcome && outcome->is(Kind::relearned)) {
    show(pill("checkmark", Theme::green, "바른 자세를 다시 잡았어요"), 1.6);
    return;
  }
  if (idle && outcome && outcome->is(Kind::relearnNeeded) && outcome->message()) {
    show(pill("figure.stand", Theme::orange, "바른 자세를 잡지 못했어요",
              *outcome->message() + " · 눌러서 다시 학습"),
         8, weakCall(self_, [](AppDelegate& app) { app.openGuide(GuideModel::Step::learn); }));
    return;
  }
  if (idle && outcome && outcome->is(Kind::tooFar) && !pills_.current()) {
    closer(monitor_->manualRun());
  }
  if (store_.peekEyes()) peek(phase, outcome);
}

bool AppDelegate::peekAllowed() const {
  return !screenQuiet();
}

void AppDelegate::peek(Monitor::Phase phase, const std::optional<Monitor::Outcome>& outcome) {
  auto openDorani = weakCall(self_, [](AppDelegate& app) { app.openPanel(PanelPage::dorani); });
  switch (phase) {
    case Monitor::Phase::sampling: {
      const bool due =
          monitor_->manualRun() || store_.buddyOften() || now() - lastBuddy_ >= peekPauseSeconds;
      if (pills_.current() || !peekAllowed() || !due) return;
      lastBuddy_ = now();
      sight_.clear();
      const int hour = calendar_.hour(now());
      const Mood mood = hour >= 23 || hour < 5 ? Mood::sleepy : Mood::looking;
      show(Pill(now(), Pill::Art::buddy(mood), Theme::white), PillCenter::untilReplaced,
           openDorani);
      return;
    }
    case Monitor::Phase::rechecking:
      if (!peekAllowed() || (pills_.current() && !pills_.current()->isBuddy())) return;
      show(Pill(now(), Pill::Art::buddy(Mood::focus), Theme::white), PillCenter::untilReplaced,
           openDorani);
      return;
    case Monitor::Phase::idle:
      if (pills_.current() && pills_.current()->isBuddy()) peekEnded(outcome);
      return;
    default:
      return;
  }
}

void AppDelegate::peekEnded(const std::optional<Monitor::Outcome>& outcome) {
  if (!outcome) {
    pills_.hide();
  } else if (outcome->is(Kind::tooFar)) {
    closer(true);
  } else if (outcome->is(Kind::lookingAway)) {
    show(Pill(now(), Pill::Art::buddy(Mood::curious), Theme::white), 1.3);
  } else if (outcome->is(Kind::good)) {
    const int level = dorani_.level();
    if (level > store_.doraniCelebrated()) {
      store_.setDoraniCelebrated(level);
      show(Pill(now(), Pill::Art::buddy(Mood::love), Theme::white), 1.8,
           weakCall(self_, [](AppDelegate& app) { app.openPanel(PanelPage::dorani); }));
    } else {
      show(Pill(now(), Pill::Art::buddy(Mood::happy), Theme::white), 0.9);
    }
  } else {
    pills_.hide();
  }
}

void AppDelegate::suggest(const Monitor::Suggestion& suggestion) {
  if (alerting_ || guide_ || panelModel_.session()) return;
  if (suggestion.kind == Monitor::Suggestion::Kind::closer) {
    closer(false);
    return;
  }
  const IssueKind kind = *suggestion.issue;
  show(pill(std::string(kind.symbol()), Theme::coral, std::string(kind.title()) + "이 자주 보여요",
            "눌러서 맞춤 스트레칭을 해 봐요"),
       8, weakCall(self_, [](AppDelegate& app) { app.startRoutine(); }));
}

void AppDelegate::closer(bool force) {
  if (alerting_ || screenQuiet()) return;
  if (!force && now() - lastCloser_ < closerPauseSeconds) return;
  lastCloser_ = now();
  show(pill("viewfinder", Theme::blue, "화면 가까이 앉아 주세요",
            "멀어서 자세를 정확히 보기 어려워요"),
       3);
}

void AppDelegate::buddyLooks(const std::optional<Measurement>& m,
                             const std::optional<Metrics>& metrics) {
  if (!m || !metrics || !pills_.current() || !pills_.current()->isBuddy()) return;
  if (metrics->lookingAway) {
    sight_.set(metrics->gazeSide.value_or(0) / 30, metrics->gazeDown.value_or(0) / 30, now());
  } else {
    const Point look = BuddySight::face(*m);
    sight_.set(look.x, look.y, now());
  }
}

// The nudges, the focus coach's pills and the goal wait for nobody: while
// an alert or the guide is up, or the screen is locked or dark, they are dropped.
bool AppDelegate::dropsFriendlyPills() const {
  return alerting_ || guide_ || power_.screenLocked() || power_.displaysAsleep();
}

void AppDelegate::nudge(const WorkLife::Nudge& nudge) {
  if (dropsFriendlyPills()) return;
  if (nudge.kind == WorkLife::Nudge::Kind::wrapUp) {
    const long long seated = roundedInt(nudge.day.seated());
    const auto ratio = log_.day(now()).ratio();
    std::string detail = "눌러서 리포트 보기";
    if (ratio) detail = format("바른 자세 %lld%% · ", roundedInt(*ratio * 100)) + detail;
    show(Pill(now(), Pill::Art::say(Mood::happy), Theme::white,
              format("오늘 %lld시간 %lld분 앉아 있었어요", seated / 60, seated % 60), detail),
         10, weakCall(self_, [](AppDelegate& app) { app.openPanel(PanelPage::history); }));
    return;
  }
  if (!focus_.active().stretch) return;
  show(Pill(now(), Pill::Art::say(Mood::curious), Theme::white,
            format("%d분째 앉아 있어요", nudge.minutes),
            "같이 스트레칭할래요? 누르면 3분 루틴을 시작해요"),
       12, weakCall(self_, [](AppDelegate& app) { app.startRoutine(); }));
}

void AppDelegate::announce(const WatchEvent& event, bool resolved) {
  if (!watch_->notify() || power_.screenLocked() || power_.displaysAsleep() || alerting_) return;
  std::string detail = "어떤 앱인지 확인하는 중…";
  if (resolved) detail = event.app + (event.suspicious ? " · " + *event.suspicious : "");
  Pill shown =
      event.suspicious
          ? pill("exclamationmark.triangle.fill", Theme::orange, "주의: 카메라가 켜졌어요", detail)
          : pill("video.fill", Theme::blue, "다른 앱이 카메라를 켰어요", detail);
  show(std::move(shown), 5,
       weakCall(self_, [](AppDelegate& app) { app.openPanel(PanelPage::camera); }));
}

void AppDelegate::breatheNow() {
  if (alerting_) return;
  const Pill breathing(now(), Pill::Art::breathe(breatheSeconds), Theme::green);
  show(breathing, PillCenter::untilReplaced,
       weakCall(self_, [](AppDelegate& app) { app.monitor_->release("breathe"); }));
  monitor_->hold("breathe");
  breatheTimer_ = scheduler_.mainTimer(
      breatheSeconds, weakCall(self_, [breathing](AppDelegate& app) {
        app.monitor_->release("breathe");
        if (app.pills_.current() != breathing) return;
        app.work_.rested(WorkLife::RestKind::breathe);
        app.show(
            app.pill("leaf.fill", Theme::green, "잘했어요", "숨이 고르면 목과 어깨 힘도 풀려요"),
            2);
      }));
}

void AppDelegate::previewBuddy() {
  if (alerting_) return;
  sight_.clear();
  const Pill looking(now(), Pill::Art::buddy(Mood::looking), Theme::white);
  show(looking, PillCenter::untilReplaced);
  previewTimers_.clear();
  for (int tenth = 18; tenth <= 29; ++tenth) {
    previewTimers_.push_back(
        scheduler_.schedule({tenth / 10.0, 0, 0}, weakCall(self_, [looking](AppDelegate& app) {
                              if (app.pills_.current() == looking)
                                app.sight_.set(0, 0.6, app.now());
                            })));
  }
  previewTimers_.push_back(scheduler_.schedule(
      {3.2, 0, 0}, weakCall(self_, [looking](AppDelegate& app) {
        if (app.pills_.current() != looking) return;
        app.show(Pill(app.now(), Pill::Art::buddy(Mood::happy), Theme::white), 1.1);
      })));
}

void AppDelegate::previewAlert(AlertStyle style) {
  if (style == AlertStyle::blur) {
    blur_.preview();
    return;
  }
  border_.show();
  borderPreviewTimer_ = scheduler_.schedule(
      {2.2, 0, 0}, weakCall(self_, [](AppDelegate& app) { app.border_.hide(); }));
}

namespace {
// The posture a study group can see in an issue; the others show nothing.
std::optional<MateState> postureState(IssueKind kind) {
  switch (kind) {
    case IssueKind::forwardHead:
      return MateState::turtle;
    case IssueKind::slouch:
    case IssueKind::leaning:
    case IssueKind::lookingDown:
      return MateState::slouch;
    default:
      return std::nullopt;
  }
}

std::optional<MateState> firstPostureState(const std::optional<Reading>& reading) {
  if (!reading || reading->issues.empty()) return std::nullopt;
  return postureState(reading->issues.front().kind);
}
}  // namespace

MateState AppDelegate::currentState() const {
  if (panelModel_.session()) return MateState::stretch;
  if (watcherJudging()) return panelModel_.madeWatcher()->state();
  if (power_.screenLocked() || power_.displaysAsleep() || power_.sessionLocked()) {
    return MateState::away;
  }
  if (monitor_->phase() == Monitor::Phase::alerting) {
    if (auto state = firstPostureState(monitor_->reading())) return *state;
  }
  const auto& report = monitor_->report();
  if (report && now() - report->time < 420) {
    if (report->outcome.is(Kind::alerted)) {
      if (auto state = firstPostureState(report->outcome.reading())) return *state;
    } else if (report->outcome.is(Kind::absent) && power_.idleSeconds() > 120) {
      return MateState::away;
    }
  }
  if (work_.present()) return focus_.session() ? MateState::focus : MateState::desk;
  return MateState::away;
}

}  // namespace sodam
