// The focus coach in the simulation: the scenario's study fields, the user
// who completes the watcher's set-up and nods off, and the transcript's
// lines for the watcher's phases and states and the focus sessions.
#include "app/focus_page.h"
#include "sim/simulation.h"
#include "support/korean_format.h"
#include "support/text.h"

namespace sodam {

namespace {
using Field = ScenarioChange::Field;
using Request = Detections::Request;

// Nodding off: the lids close over the first seconds, then the head sinks.
constexpr double dozeSeconds = 30;

const char* phaseLine(WatchEngine::Phase phase) {
  switch (phase) {
    case WatchEngine::Phase::off:
      return "집중코치 꺼짐";
    case WatchEngine::Phase::setup:
      return "집중코치 자리 맞추기";
    case WatchEngine::Phase::calibrating:
      return "집중코치 바른 자세 재기";
    case WatchEngine::Phase::running:
      return "집중코치 지켜보기 시작";
  }
  return "";
}
}  // namespace

void Simulation::followFocus() {
  focusTold_.watcherToken = app_->watcher().onChange.subscribe([this] { tellWatcher(); });
  focusTold_.focusToken = app_->focus().onUpdate.subscribe([this] { tellFocus(); });
}

void Simulation::applyStudy(const ScenarioChange& change) {
  const auto choice = static_cast<int>(change.value);
  switch (change.field) {
    case Field::focus: {
      const UseMode mode(static_cast<UseMode::Value>(choice));
      for (const auto& preset : app_->focus().presets()) {
        if (preset.mode != mode) continue;
        transcript_.say("(앉은 사람이 메뉴에서 「" + preset.name + "」 모드를 골라요)");
        app_->perform(MenuAction::pickMode, std::nullopt, preset.id);
        break;
      }
      break;
    }
    case Field::habit: {
      FocusPreset preset = app_->focus().active();
      const WatchHabit habit(static_cast<WatchHabit::Value>(choice));
      if (preset.watches(habit)) break;
      preset.habits.push_back(habit);
      app_->focus().save(preset);
      transcript_.say("(집중 페이지에서 「" + std::string(habit.title()) + "」도 살피게 해요)");
      break;
    }
    case Field::hands:
      machine_.sitter.hands = static_cast<SitterHands>(choice);
      break;
    case Field::doze:
      dozing_ = change.value != 0;
      if (!dozing_) machine_.sitter.doze = 0;
      break;
    default:
      break;
  }
}

// The set-up sheet is started once the camera sees face, shoulders and
// hands; a dozing sitter sinks a little further every step.
void Simulation::studyLikeAUser() {
  if (dozing_) {
    machine_.sitter.doze = std::min(1.0, machine_.sitter.doze + 0.5 / dozeSeconds);
  }
  const WatchEngine* watcher = app_->panelModel().madeWatcher();
  if (!watcher || !app_->panelModel().watchSetupOpen()) return;
  if (watcher->phase() == WatchEngine::Phase::setup && watcher->framing().ok()) {
    transcript_.say("(앉은 사람이 바른 자세로 앉아 집중코치를 시작해요)");
    app_->startWatching();
  }
}

void Simulation::tellWatcher() {
  const WatchEngine& watcher = app_->watcher();
  FocusTold& told = focusTold_;
  if (watcher.phase() != told.phase) {
    told.phase = watcher.phase();
    told.state.reset();
    told.note.reset();
    told.hint.reset();
    watcherRan_ = watcherRan_ || watcher.active();
    transcript_.say(phaseLine(told.phase));
  }
  if (told.phase == WatchEngine::Phase::setup) {
    const auto hint = watcher.framing().ok()
                          ? std::optional<std::string>("얼굴·어깨·손이 다 보여요")
                          : watcher.framing().hint;
    if (hint != told.hint) {
      told.hint = hint;
      if (hint) transcript_.say("집중코치 안내: " + *hint);
    }
  }
  if (told.phase != WatchEngine::Phase::running) return;
  if (watcher.state() == told.state && watcher.note() == told.note) return;
  told.state = watcher.state();
  told.note = watcher.note();
  std::string line = "집중코치: " + std::string(told.state->title());
  if (told.note) line += " · " + *told.note;
  transcript_.say(line);
}

// Sessions of the watcher's presets only: at the laptop a session is just
// the time in the seat, which the day's other lines already tell.
void Simulation::tellFocus() {
  const FocusCenter& focus = app_->focus();
  FocusTold& told = focusTold_;
  if (focus.session().has_value() != told.session) {
    told.session = focus.session().has_value();
    if (told.session && focus.active().mode == UseMode::watch) {
      transcript_.say("집중 시작: " + focus.active().name);
    }
  }
  if (focus.records().size() == told.records) return;
  told.records = focus.records().size();
  const FocusRecord& r = focus.records().back();
  if (r.mode != UseMode::watch) return;
  transcript_.say("집중 기록: " + Fmt::clock(r.start, calendar_) + " – " +
                  Fmt::clock(r.end, calendar_) + " · " + r.preset + " · " + hm(r.focused / 60));
}

std::optional<SimulationSummary::Focus> Simulation::summarizeFocus() const {
  if (!watcherRan_) return std::nullopt;
  SimulationSummary::Focus f;
  const Date now = clock_.now();
  FocusCenter& focus = app_->focus();
  f.minutes = focus.minutes(now);
  for (int i = 0; i < WatchHabit::count; ++i) {
    const WatchHabit habit(static_cast<WatchHabit::Value>(i));
    if (const int n = focus.habitCount(habit, now)) f.habits.emplace_back(habit.title(), n);
  }
  const SimCamera& camera = machine_.camera;
  const double frames = camera.framesDetected();
  if (camera.secondsRunning() > 0) f.framesPerSecond = frames / camera.secondsRunning();
  if (frames > 0) {
    f.maskShare = camera.requestsRun(Request::person) / frames;
    f.bodyShare = camera.requestsRun(Request::body) / frames;
    f.sceneShare = camera.requestsRun(Request::scene) / frames;
  }
  return f;
}

}  // namespace sodam
