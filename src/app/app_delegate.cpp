#include "app/app_delegate.h"

#include "companion/pill_look.h"
#include "support/text.h"
#include "support/weak_call.h"

namespace sodam {

namespace {
// The pace of the camera while the companion's eyes follow the user.
constexpr double followFrameSeconds = 0.2;
}  // namespace

AppDelegate::AppDelegate(Lockdown& lock, Platform platform)
    : lock_(lock),
      shell_(platform.shell),
      defaults_(platform.defaults),
      process_(platform.process),
      clock_(platform.clock),
      scheduler_(platform.scheduler),
      calendar_(platform.calendar),
      self_(lifeToken(this)),
      store_(platform.defaults, platform.clock, calendar_),
      power_(platform.power),
      capture_({platform.camera, platform.detector, platform.access, platform.glass,
                platform.scheduler, platform.clock, platform.sessionQueue, platform.frameQueue}),
      frames_(capture_),
      lid_(std::move(platform.lidDevice), platform.lidQueue, platform.scheduler),
      pills_(platform.pillPresenter, platform.screens, platform.scheduler),
      border_(platform.overlays),
      blur_(platform.overlays, platform.scheduler, platform.clock),
      log_(platform.defaults, platform.clock, calendar_),
      work_(platform.defaults, store_, power_, platform.scheduler, platform.clock, calendar_),
      focus_(platform.defaults, platform.clock, calendar_),
      dorani_({platform.defaults, store_, log_, work_, platform.clock, calendar_,
               weakAsk(self_, 0.0,
                       [](AppDelegate& app, Date day) { return app.focus_.minutes(day); })}),
      monitor_(
          std::make_unique<Monitor>(Monitor::Ports{frames_, lid_, log_, store_, platform.defaults,
                                                   power_, platform.clock, platform.scheduler})),
      doraniPage_(std::make_unique<DoraniPage>(DoraniPage::Ports{dorani_, *monitor_, store_,
                                                                 platform.clock, platform.scheduler,
                                                                 DoraniPoke::randomPick()})),
      watch_(std::make_unique<CameraWatch>(CameraWatch::Ports{
          platform.cameraDevices ? *platform.cameraDevices : noCameras_,
          platform.appCatalog ? *platform.appCatalog : pathCatalog_, platform.logLink, store_,
          power_, platform.clock, platform.scheduler})),
      feed_(capture_, lid_, platform.clock),
      panelModel_({feed_,
                   *monitor_,
                   lock_,
                   log_,
                   store_,
                   platform.scheduler,
                   platform.clock,
                   {feed_, capture_, *monitor_, power_, work_, platform.clock},
                   platform.languageModel}) {
  monitor_->displayHeightCm = platform.displayHeightCm;
  if (platform.cloud) makeCloud(*platform.cloud);
  pills_.look =
      weakAsk(self_, PillLook{}, [](AppDelegate& app) { return PillLook::current(app.store_); });
  connectPanel();
}

// The panel's actions, set before anything runs.
void AppDelegate::connectPanel() {
  panelModel_.present =
      weakCall(self_, [](AppDelegate& app, PanelPage page) { app.shell_.openPanel(page); });
  panelModel_.openGuide =
      weakCall(self_, [](AppDelegate& app, GuideModel::Step step) { app.openGuide(step); });
  panelModel_.quit = weakCall(self_, [](AppDelegate& app) { app.shell_.terminate(); });
  panelModel_.eyesRested =
      weakCall(self_, [](AppDelegate& app) { app.work_.rested(WorkLife::RestKind::eyes); });
  panelModel_.breathe = weakCall(self_, [](AppDelegate& app) { app.breatheNow(); });
  panelModel_.previewBuddy = weakCall(self_, [](AppDelegate& app) { app.previewBuddy(); });
  panelModel_.previewAlert =
      weakCall(self_, [](AppDelegate& app, AlertStyle style) { app.previewAlert(style); });
  panelModel_.onChange.subscribe(
      weakCall(self_, [](AppDelegate& app) { app.eyesFollow(app.panelModel_.following()); }));
}

// The monitor is held meanwhile; each frame turns the eyes to the face, and
// an empty chair rests them.
void AppDelegate::eyesFollow(bool on) {
  if (on == eyesFollowing_) return;
  eyesFollowing_ = on;
  sight_.clear();
  if (!on) {
    feed_.onMeasure = nullptr;
    feed_.stop();
    return;
  }
  feed_.onMeasure = weakCall(self_, [](AppDelegate& app, const std::optional<Measurement>& m) {
    if (!m) {
      app.sight_.clear();
      return;
    }
    const Point look = BuddySight::face(*m);
    app.sight_.set(look.x, look.y, app.now());
  });
  feed_.start(followFrameSeconds, false);
}

AppDelegate::~AppDelegate() {
  *self_ = nullptr;
  guide_.reset();
}

void AppDelegate::finishLaunching(bool loginLaunch) {
  statusItem_.drawn(StatusIcon::Eyes::open, store_.pillEars(lookCount<PillEars>()));
  wire();
  work_.start();
  if (power_.sessionLocked()) {
    power_.setScreenLocked(true);
    monitor_->hold("lock");
  }
  wireFocus();
  watch_->start();
  wireSocial();
  lock_.onThreat = weakCall(self_, [](AppDelegate& app, const Threat&) {
    app.capture_.revoke();
    app.refresh();
  });
  lock_.watch(hardeningChecks(process_));
  refresh();
  if (capture_.revoked()) {
    openPanel(PanelPage::home);
    return;
  }
  if (!monitor_->baseline()) {
    openGuide(store_.guideDone() ? GuideModel::Step::learn : GuideModel::Step::welcome);
    return;
  }
  monitor_->start();
  if (loginLaunch) return;
  openPanel(PanelPage::home);
}

void AppDelegate::wire() {
  capture_.onStateChange = weakCall(self_, [](AppDelegate& app, bool running) {
    app.watch_->setSelfActive(running);
    app.refresh();
  });
  monitor_->onChange.subscribe(weakCall(self_, [](AppDelegate& app) { app.refresh(); }));
  monitor_->onAlert = weakCall(self_, [](AppDelegate& app, const std::optional<Issue>& issue,
                                         bool corrected) { app.alert(issue, corrected); });
  monitor_->onSeverity =
      weakCall(self_, [](AppDelegate& app, double value) { app.severity(value); });
  monitor_->onPhase = weakCall(self_, [](AppDelegate& app, Monitor::Phase phase,
                                         const std::optional<Monitor::Outcome>& outcome) {
    app.phaseChanged(phase, outcome);
  });
  monitor_->onSuggest =
      weakCall(self_, [](AppDelegate& app, const Monitor::Suggestion& s) { app.suggest(s); });
  monitor_->onFrame =
      weakCall(self_, [](AppDelegate& app, const std::optional<Measurement>& m,
                         const std::optional<Metrics>& metrics) { app.buddyLooks(m, metrics); });
  monitor_->canRelearn = weakAsk(self_, false, [](AppDelegate& app) { return app.canRelearn(); });
  monitor_->onPresence =
      weakCall(self_, [](AppDelegate& app, bool present) { app.work_.observed(present); });
  monitor_->onStretched =
      weakCall(self_, [](AppDelegate& app) { app.work_.rested(WorkLife::RestKind::stretch); });
  work_.canNudge = weakAsk(self_, false, [](AppDelegate& app) { return app.canNudge(); });
  work_.onNudge = weakCall(self_, [](AppDelegate& app, const WorkLife::Nudge& n) { app.nudge(n); });
  watch_->onChange.subscribe(weakCall(self_, [](AppDelegate& app) { app.refresh(); }));
  watch_->onCameraOn = weakCall(self_, [](AppDelegate& app, const WatchEvent& event,
                                          bool resolved) { app.announce(event, resolved); });
}

// The camera belongs to another application just now.
bool AppDelegate::cameraBusyElsewhere() const {
  return capture_.inUseElsewhere();
}

// The user can't or shouldn't be shown anything: locked, dark or busy with
// a full-screen window or a video.
bool AppDelegate::screenQuiet() const {
  return power_.screenLocked() || power_.displaysAsleep() || power_.fullscreenFront() ||
         power_.displayHeldAwake() || cameraBusyElsewhere();
}

bool AppDelegate::canRelearn() const {
  return !screenQuiet() && !panelModel_.session();
}

bool AppDelegate::canNudge() const {
  return !alerting_ && !guide_ && !panelModel_.session() && !pills_.current() &&
         !cameraBusyElsewhere() && !power_.screenLocked() && !power_.displaysAsleep() &&
         !power_.fullscreenFront();
}

StatusFacts AppDelegate::statusFacts() const {
  StatusFacts facts;
  facts.phase = monitor_->phase();
  facts.enabled = monitor_->enabled();
  facts.held = monitor_->isHeld();
  facts.hasBaseline = monitor_->baseline().has_value();
  facts.checkMode = store_.checkMode();
  facts.report = monitor_->report();
  facts.cameraRevoked = capture_.revoked();
  facts.unseenCameraUses = watch_->unseen();
  facts.ears = store_.pillEars(lookCount<PillEars>());
  for (const auto& preset : focus_.presets())
    facts.presets.push_back({preset.id, preset.name, preset.symbol, preset.mode == UseMode::watch});
  facts.activePresetId = focus_.active().id;
  facts.watcherActive = panelModel_.madeWatcher() && panelModel_.madeWatcher()->active();
  return facts;
}

void AppDelegate::refresh() {
  shell_.drawStatus(statusItem_.refresh(statusFacts()));
}

HomePage AppDelegate::homePage() const {
  const PageRecords records{log_, work_.days(), calendar_, now()};
  return HomePage::make(records,
                        {statusLine(statusFacts()), monitor_->nextCheck(), work_.streakMinutes()});
}

ReportPage AppDelegate::reportPage() const {
  return ReportPage::make({log_, work_.days(), calendar_, now()});
}

DoctorPage AppDelegate::doctorPage() const {
  return DoctorPage::make({log_, work_.days(), calendar_, now()});
}

SettingsPage AppDelegate::settingsPage(CaptureShield* shield) {
  return SettingsPage(
      store_, lock_.summary(),
      {monitor_.get(), shield, weakCall(self_, [](AppDelegate& app) { app.refresh(); })});
}

std::vector<MenuItem> AppDelegate::quickMenu() const {
  return sodam::quickMenu(statusFacts(), calendar_);
}

std::vector<MenuItem> AppDelegate::postureMenu() const {
  return sodam::postureMenu(statusFacts());
}

void AppDelegate::perform(MenuAction action, std::optional<int> tag,
                          const std::optional<std::string>& payload) {
  switch (action) {
    case MenuAction::toggle:
      toggle();
      break;
    case MenuAction::checkNow:
      monitor_->checkNow();
      break;
    case MenuAction::relearn:
      openGuide(GuideModel::Step::learn);
      break;
    case MenuAction::openHome:
      openPanel(PanelPage::home);
      break;
    case MenuAction::openDorani:
      openPanel(PanelPage::dorani);
      break;
    case MenuAction::openSettings:
      openPanel(PanelPage::settings);
      break;
    case MenuAction::setupDesk:
      openGuide(GuideModel::Step::setup);
      break;
    case MenuAction::openPage:
      if (auto page = tag ? pageForShortcut(*tag) : std::nullopt) openPanel(*page);
      break;
    case MenuAction::pickMode:
      if (payload) pickMode(*payload);
      break;
    case MenuAction::toggleWatch:
      toggleWatch();
      break;
    case MenuAction::startRoutine:
      startRoutine();
      break;
    case MenuAction::breatheNow:
      breatheNow();
      break;
    case MenuAction::quit:
    case MenuAction::terminate:
      shell_.terminate();
      break;
    default:
      break;  // the shell's own window actions, and parts not built yet
  }
}

// With nothing learned yet there is nothing to switch on: the guide teaches
// the posture first.
void AppDelegate::toggle() {
  if (!monitor_->baseline()) {
    openGuide(GuideModel::Step::learn);
    return;
  }
  const bool on = !monitor_->enabled();
  monitor_->setEnabled(on);
  if (on) {
    show(pill("figure.stand", Theme::blue, "자세 확인 켜짐", "바른 자세를 지켜볼게요"), 1.8);
  } else {
    show(pill("pause.fill", Theme::gray, "자세 확인 꺼짐", "다시 켜기 전까지 카메라를 쓰지 않아요"),
         1.8);
  }
}

void AppDelegate::startRoutine() {
  if (guide_) return;
  panelModel_.startRoutine();
}

void AppDelegate::screenLocked() {
  power_.setScreenLocked(true);
  monitor_->hold("lock");
  watch_->setPaused(true);
}

void AppDelegate::screenUnlocked() {
  power_.setScreenLocked(false);
  work_.refresh();
  monitor_->release("lock");
  watch_->setPaused(false);
  const int unseen = watch_->unseen();
  if (unseen >= 1) {
    show(pill("exclamationmark.triangle.fill", Theme::orange, "자리를 비운 사이 카메라가 켜졌어요",
              format("기록 %d건 · 눌러서 확인", unseen)),
         8, weakCall(self_, [](AppDelegate& app) { app.openPanel(PanelPage::camera); }));
  }
}

void AppDelegate::screensSlept() {
  power_.setDisplaysAsleep(true);
  monitor_->hold("display");
}

void AppDelegate::screensWoke() {
  power_.setDisplaysAsleep(false);
  monitor_->release("display");
}

// A sleeping machine sees nothing; the watcher judges again once it wakes.
void AppDelegate::willSleep() {
  monitor_->hold("sleep");
  watcher().setPaused(true);
  watch_->setPaused(true);
}

void AppDelegate::didWake() {
  monitor_->release("sleep");
  watcher().setPaused(false);
  if (!power_.screenLocked()) watch_->setPaused(false);
}

void AppDelegate::reopen() {
  if (!guide_) panelModel_.reopen();
}

void AppDelegate::deactivated() {
  panelModel_.follow(false);
}

void AppDelegate::openGuide(GuideModel::Step step) {
  if (capture_.revoked()) return;
  if (guide_) {
    guide_->go(step);
    return;
  }
  panelModel_.follow(false);
  panelModel_.stopSession();
  monitor_->hold("guide");
  const bool firstTime = !store_.guideDone();
  GuideModel::Ports ports{feed_,  *monitor_,
                          store_, scheduler_,
                          clock_, [this](const std::string& url) { shell_.openUrl(url); }};
  // The model calls close from inside itself; it is let go on the next turn.
  auto closed = weakCall(self_, [firstTime](AppDelegate& app) {
    app.scheduler_.post(
        weakCall(app.self_, [firstTime](AppDelegate& later) { later.guideClosed(firstTime); }));
  });
  guide_ = std::make_unique<GuideModel>(step, std::move(ports), closed);
  shell_.presentGuide(*guide_);
  guide_->go(step);
}

void AppDelegate::guideClosed(bool openedFirstTime) {
  if (!guide_) return;
  shell_.closeGuide();
  guide_.reset();
  monitor_->release("guide");
  const bool learned = monitor_->baseline().has_value();
  if (learned && !store_.guideDone()) store_.setGuideDone(true);
  if (openedFirstTime && learned) openPanel(PanelPage::home);
}

}  // namespace sodam
