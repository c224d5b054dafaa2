#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "alerts/blur_alert.h"
#include "alerts/border_alert.h"
#include "alerts/pill_center.h"
#include "app/calendar_page.h"
#include "app/desk_page.h"
#include "app/doctor_page.h"
#include "app/dorani_page.h"
#include "app/focus_page.h"
#include "app/groups_page.h"
#include "app/home_page.h"
#include "app/menus.h"
#include "app/panel_model.h"
#include "app/panel_page.h"
#include "app/ranking_page.h"
#include "app/report_page.h"
#include "app/settings_page.h"
#include "app/status_item.h"
#include "camerawatch/camera_watch.h"
#include "cloud/cloud_auth.h"
#include "cloud/firestore.h"
#include "cloud/social.h"
#include "companion/buddy_sight.h"
#include "companion/dorani.h"
#include "companion/mate_state.h"
#include "focus/focus_center.h"
#include "focus/watch_engine.h"
#include "health/language_model.h"
#include "platform/alert_style.h"
#include "platform/lid_sensor.h"
#include "platform/lockdown.h"
#include "platform/power.h"
#include "platform/store.h"
#include "posture/capture.h"
#include "posture/capture_frame_source.h"
#include "posture/guide_model.h"
#include "posture/issue_kind.h"
#include "posture/live_feed.h"
#include "posture/metrics.h"
#include "posture/monitor.h"
#include "posture/posture_log.h"
#include "support/calendar.h"
#include "support/weak_call.h"
#include "worklife/work_life.h"

namespace sodam {

// The window side of the application, which the platform shell provides.
// Every call comes on the main thread.
class AppShell {
 public:
  virtual ~AppShell() = default;
  // The status item changed; the image only when `redrawImage`.
  virtual void drawStatus(const StatusItem::Refresh& refresh) = 0;
  virtual void openPanel(PanelPage page) = 0;
  // The learning guide's window: shown for the model, closed when it ends.
  virtual void presentGuide(GuideModel& model) = 0;
  virtual void closeGuide() = 0;
  virtual void openUrl(const std::string& url) = 0;
  // Brings the application in front of the browser after a sign-in.
  virtual void activate() {}
  virtual void terminate() = 0;
};

// The root of the product: owns every long-lived component, wires their
// callbacks and routes what they report to the pill, the border, the blur and
// the panel. No component knows another except through this object. Main
// thread only; the shell hops here before calling in.
class AppDelegate {
 public:
  struct Platform {
    CameraDevice& camera;
    Detector& detector;
    CameraAccess& access;
    GlassRenderer* glass;
    SerialQueue& sessionQueue;
    SerialQueue& frameQueue;
    std::unique_ptr<LidDevice> lidDevice;
    SerialQueue& lidQueue;
    PowerSource& power;
    Defaults& defaults;
    PillPresenter& pillPresenter;
    ScreenSource& screens;
    OverlayPresenter& overlays;
    AppShell& shell;
    // What the hardening checks read of the running process.
    const ProcessInspector& process;
    Clock& clock;
    Scheduler& scheduler;
    Calendar calendar;
    // Physical height of the built-in screen, for the lid geometry.
    std::optional<double> displayHeightCm;
    // The system's language model for the health coach's chat, where it has one.
    LanguageModel* languageModel = nullptr;
    // The camera watch's view of the machine; without them it watches no
    // camera and names applications by their paths alone.
    CameraDevices* cameraDevices = nullptr;
    AppCatalog* appCatalog = nullptr;
    // The camera-log helper, started before the lock; none when it could not be.
    LogLink* logLink = nullptr;
    // The cloud's transport and secrets; without them the study groups are off.
    struct Cloud {
      CloudConfig config;
      HttpClient& http;
      Keychain& keychain;
      LoopbackListenerFactory listeners;
    };
    std::optional<Cloud> cloud = std::nullopt;
  };

  AppDelegate(Lockdown& lock, Platform platform);
  ~AppDelegate();
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  // The launch, once the main loop runs. `loginLaunch`: started by a login item.
  void finishLaunching(bool loginLaunch);

  // The system's notifications.
  void screenLocked();
  void screenUnlocked();
  void screensSlept();
  void screensWoke();
  void willSleep();
  void didWake();
  // The dock icon or the application was opened again.
  void reopen();
  // The user went to another application.
  void deactivated();

  // The menus, rebuilt by the shell each time one opens.
  std::vector<MenuItem> quickMenu() const;
  std::vector<MenuItem> postureMenu() const;
  // A chosen item's action, with the tag and represented object it was made with.
  void perform(MenuAction action, std::optional<int> tag = std::nullopt,
               const std::optional<std::string>& payload = std::nullopt);

  void openGuide(GuideModel::Step step);
  // Opens the stretch page with the day's routine, or with the session that
  // already runs; not while the guide is up.
  void startRoutine();
  // The focus coach: a preset picked by its id, the watcher started or
  // ended from the menu, and the set-up sheet's start, which calibrates the
  // watcher for the active preset.
  void pickMode(const std::string& presetId);
  void toggleWatch();
  void startWatching();
  // The ten-second tick that tells the focus center the user's state,
  // publishes it to the study groups and reminds of their sessions.
  void tickTogether();
  void breatheNow();
  void previewBuddy();
  void previewAlert(AlertStyle style);
  void refresh();

  // The panel's everyday pages as they stand now.
  HomePage homePage() const;
  ReportPage reportPage() const;
  // The focus page: presets, the running session, the watcher, today.
  FocusPage focusPage() const;
  // The settings page, whose changes the monitor, the status item and the
  // shield (where the platform has one) follow at once.
  SettingsPage settingsPage(CaptureShield* shield);
  // The health coach's page of the last seven days.
  DoctorPage doctorPage() const;
  // The desk page over the stored setup.
  DeskPage deskPage() { return DeskPage(defaults_); }

  bool alerting() const { return alerting_; }
  // What the study groups see of the user now.
  MateState currentState() const;
  MyStatus myStatus() const;
  // The together pages; signed out (or without the cloud) the groups page
  // shows its sign-in card and the others are empty.
  GroupsPage groupsPage() const;
  RankingPage rankingPage(const std::string& groupId, RankingPage::Period period) const;
  CalendarPage calendarPage(Date selected) const;
  // The user's study-room figure; a change goes out to the groups at once.
  MateLook mateLook() const;
  void setMateLook(const MateLook& look);
  StatusFacts statusFacts() const;

  Monitor& monitor() { return *monitor_; }
  CameraWatch& watch() { return *watch_; }
  PillCenter& pills() { return pills_; }
  BorderAlert& border() { return border_; }
  BlurAlert& blur() { return blur_; }
  Store& store() { return store_; }
  Power& power() { return power_; }
  PostureLog& log() { return log_; }
  WorkLife& work() { return work_; }
  Dorani& dorani() { return dorani_; }
  // The companion's page: its lines, its replies to taps and its looks.
  DoraniPage& doraniPage() { return *doraniPage_; }
  FocusCenter& focus() { return focus_; }
  // The sign-in and the study groups; nothing without the cloud's ports.
  CloudAuth* cloudAuth() { return cloudAuth_.get(); }
  Social* social() { return social_.get(); }
  WatchEngine& watcher() { return panelModel_.watcher(); }
  Capture& capture() { return capture_; }
  const Calendar& calendar() const { return calendar_; }
  LiveFeed& feed() { return feed_; }
  BuddySight& buddySight() { return sight_; }
  GuideModel* guide() { return guide_.get(); }
  PanelModel& panelModel() { return panelModel_; }

 private:
  Date now() const { return clock_.now(); }
  void wire();
  void show(Pill pill, std::optional<double> seconds, std::function<void()> action = {});
  Pill pill(std::string symbol, Theme tint, std::string title,
            std::optional<std::string> detail = std::nullopt) const;
  bool cameraBusyElsewhere() const;
  bool screenQuiet() const;
  bool peekAllowed() const;
  bool canRelearn() const;
  bool canNudge() const;

  void alert(const std::optional<Issue>& issue, bool corrected);
  void severity(double value);
  void phaseChanged(Monitor::Phase phase, const std::optional<Monitor::Outcome>& outcome);
  void peek(Monitor::Phase phase, const std::optional<Monitor::Outcome>& outcome);
  void peekEnded(const std::optional<Monitor::Outcome>& outcome);
  void suggest(const Monitor::Suggestion& suggestion);
  void closer(bool force);
  void buddyLooks(const std::optional<Measurement>& m, const std::optional<Metrics>& metrics);
  bool dropsFriendlyPills() const;
  void nudge(const WorkLife::Nudge& nudge);
  void wireFocus();
  void makeCloud(const Platform::Cloud& cloud);
  void wireSocial();
  void publishStatus();
  void remindSessions();
  void remind(const SessionTime& time, double until);
  void habitCaught(WatchHabit habit);
  void goalReached(int minutes);
  void modeChanged(const FocusPreset& old, const FocusPreset& now);
  // The watcher runs and judges: its state is the user's.
  bool watcherJudging() const;
  void announce(const WatchEvent& event, bool resolved);
  void guideClosed(bool openedFirstTime);
  void toggle();
  void openPanel(PanelPage page) { panelModel_.open(page); }
  void connectPanel();
  // While the companion's page follows the user, the camera runs for its eyes.
  void eyesFollow(bool on);

  Lockdown& lock_;
  AppShell& shell_;
  Defaults& defaults_;
  const ProcessInspector& process_;
  Clock& clock_;
  Scheduler& scheduler_;
  Calendar calendar_;
  LifeToken<AppDelegate> self_;

  Store store_;
  Power power_;
  Capture capture_;
  CaptureFrameSource frames_;
  LidSensor lid_;
  PillCenter pills_;
  BorderAlert border_;
  BlurAlert blur_;
  PostureLog log_;
  WorkLife work_;
  // Before the companion, which counts the focus minutes as it is made.
  FocusCenter focus_;
  Dorani dorani_;
  std::unique_ptr<Monitor> monitor_;
  std::unique_ptr<DoraniPage> doraniPage_;
  NoCameraDevices noCameras_;
  PlainAppCatalog pathCatalog_{macInstallFolders("")};
  std::unique_ptr<CameraWatch> watch_;
  LiveFeed feed_;
  PanelModel panelModel_;
  BuddySight sight_;
  StatusItem statusItem_;
  std::unique_ptr<GuideModel> guide_;
  std::unique_ptr<CloudAuth> cloudAuth_;
  std::unique_ptr<Firestore> firestore_;
  std::unique_ptr<Social> social_;
  // Session reminders already given in this run.
  std::set<std::string> reminded_;

  bool alerting_ = false;
  bool eyesFollowing_ = false;
  Date lastBuddy_ = Date::distantPast();
  SeverityBlur severity_;
  Date lastCloser_ = Date::distantPast();
  std::vector<Timer> previewTimers_;
  Timer breatheTimer_;
  Timer togetherTimer_;
  Timer borderPreviewTimer_;
};

}  // namespace sodam
