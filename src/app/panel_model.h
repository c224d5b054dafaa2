#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "app/panel_page.h"
#include "coach/coach_session.h"
#include "coach/stretch.h"
#include "focus/watch_engine.h"
#include "health/doctor_chat.h"
#include "health/language_model.h"
#include "platform/alert_style.h"
#include "platform/lockdown.h"
#include "platform/store.h"
#include "posture/guide_model.h"
#include "posture/live_feed.h"
#include "posture/monitor.h"
#include "posture/posture_log.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// The home page's cards that open into a detail view.
enum class HomeCard { posture, alerts, stretch, worklife, insights, issues };

// What the panel's views share: the page in front, the home page's open
// card, whether the companion's eyes follow the user, and the actions the
// views may ask of the application, which sets them when it makes the model.
// Every view follows `onChange`. Main thread only.
class PanelModel {
 public:
  using Page = PanelPage;
  using Section = PanelSection;

  // The hold that keeps the checks quiet while the companion's eyes follow
  // the user's face.
  static constexpr std::string_view followHold = "dorani";

  struct Parts {
    LiveFeed& feed;
    Monitor& monitor;
    Lockdown& lock;
    PostureLog& log;
    const Store& store;
    Scheduler& scheduler;
    const Clock& clock;
    // What the focus watcher is made from.
    WatchEngine::Ports watch;
    // The health coach's chat answers through it; none where the system
    // offers no model.
    LanguageModel* languageModel = nullptr;
  };

  explicit PanelModel(Parts parts) : parts_(parts) {}
  // Gives back the companion's hold, if it stands; a session still running
  // is closed.
  ~PanelModel();
  PanelModel(const PanelModel&) = delete;
  PanelModel& operator=(const PanelModel&) = delete;

  ChangeSignal onChange;

  // The page in front while the window is up; the page last shown while it
  // is closed, so that the window opens again where the user left it.
  Page page() const { return page_; }
  // Brings the window up on the page; every menu, pill and launch path
  // comes here.
  void open(Page page);
  // Brings the window up on the page last shown.
  void reopen() { open(page_); }
  // Changes the page inside the window: the sidebar and the group pages'
  // own header. Leaving the companion page ends following, leaving home
  // closes its card.
  void go(Page page);
  // The sidebar's row for the page: the group pages' family shares one.
  static Page sidebarPage(Page page);

  bool visible() const { return visible_; }
  // The shell's word that its window closed (or came up by itself).
  void setVisible(bool visible);

  std::optional<HomeCard> homeCard() const { return homeCard_; }
  bool homeCardOpen() const { return homeCardOpen_; }
  // The open card has grown over the whole page.
  bool homeCardCover() const { return homeCardCover_; }
  void openCard(HomeCard card);
  void coverCard(bool cover);
  // Closes the card; `homeCard` keeps naming it so the view can shrink it
  // back into its tile.
  void closeCard();

  // The focus coach's set-up sheet is up.
  bool watchSetupOpen() const { return watchSetupOpen_; }
  // Closing the sheet before the watcher was started turns its camera off.
  void setWatchSetupOpen(bool open);
  // Opens the set-up sheet with the camera on, so that the user can place
  // the machine; nothing while the watcher already runs.
  void requestWatchSetup();

  // The focus coach's watch engine, made on first use.
  WatchEngine& watcher();
  // The watcher if it was made; nothing before its first use.
  const WatchEngine* madeWatcher() const { return watcher_.get(); }

  // While the companion page is in front, keeps the checks quiet so that the
  // camera can serve the companion's eyes, which follow the user's face. It
  // does nothing when the page is not in front or the user switched the
  // following off; it ends when the page goes, the window closes, the guide
  // opens or the user goes to another application.
  bool following() const { return following_; }
  void follow(bool on);

  // The stretch coach's session on the stretch page, finished or not, until
  // it is closed; none while no routine runs.
  CoachSession* session() { return session_.get(); }
  const CoachSession* session() const { return session_.get(); }
  // Makes a session of the stretches, shows it on the stretch page and
  // begins it; a session that ran ends.
  void start(std::vector<Stretch> items);
  void stopSession();
  // The day's recommended routine, from the issues of the week's alerts.
  std::vector<Stretch> routine() const;
  // Opens the stretch page with the day's routine, or with the session that
  // already runs.
  void startRoutine();

  LiveFeed& feed() { return parts_.feed; }
  Monitor& monitor() { return parts_.monitor; }
  Lockdown& lock() { return parts_.lock; }
  PostureLog& log() { return parts_.log; }

  // The application's actions, set once when the application makes the model.
  // Shows the panel's window on the page.
  std::function<void(Page)> present;
  std::function<void(GuideModel::Step)> openGuide;
  std::function<void(AlertStyle)> previewAlert;
  std::function<void()> breathe;
  std::function<void()> previewBuddy;
  std::function<void()> quit;
  // A session's eye rest was completed.
  std::function<void()> eyesRested;

  // The health coach's consult and chat, made on first use; it is given
  // the week's habits again each time the doctor page comes to the front.
  DoctorChat& chat();
  // The habits of the last seven days of the log.
  HabitReport habitReport() const;
  // The consult's sheet over the doctor page, and whether it fills the page.
  bool consultOpen() const { return consultOpen_; }
  bool consultExpanded() const { return consultExpanded_; }
  void openConsult();
  void closeConsult();
  void expandConsult(bool expanded);
  // A session of the library's stretches of these ids, in order; unknown
  // ids are left out.
  void startStretches(const std::vector<std::string>& ids);

  // The camera watch's page reads the watch from the application core, not
  // from here.

 private:
  void changed() { onChange.notify(); }
  // The doctor page comes to the front: the chat, if made, hears the week.
  void refreshChat();

  Parts parts_;
  LifeToken<PanelModel> self_ = lifeToken(this);
  Page page_ = Page::home;
  bool visible_ = false;
  std::optional<HomeCard> homeCard_;
  bool homeCardOpen_ = false;
  bool homeCardCover_ = false;
  bool watchSetupOpen_ = false;
  bool following_ = false;
  std::unique_ptr<CoachSession> session_;
  std::unique_ptr<WatchEngine> watcher_;
  std::unique_ptr<DoctorChat> chat_;
  bool consultOpen_ = false;
  bool consultExpanded_ = false;
};

}  // namespace sodam
