// The study groups in the day: the sign-in and the groups made and wired, the
// user's status published on the together tick, the reminders of the groups'
// sessions, and the together pages.
#include <cmath>

#include "app/app_delegate.h"
#include "app/together_status.h"
#include "support/text.h"
#include "support/weak_call.h"

namespace sodam {

namespace {
constexpr double soonSeconds = 300;
constexpr double startedSeconds = -90;
constexpr double soonPillSeconds = 10;
constexpr double startedPillSeconds = 12;
}  // namespace

void AppDelegate::makeCloud(const Platform::Cloud& cloud) {
  cloudAuth_ = std::make_unique<CloudAuth>(
      cloud.config,
      CloudAuth::Ports{cloud.http, cloud.keychain, clock_, scheduler_, cloud.listeners,
                       weakCall(self_, [](AppDelegate& app,
                                          const std::string& url) { app.shell_.openUrl(url); }),
                       weakCall(self_, [](AppDelegate& app) { app.shell_.activate(); })});
  firestore_ = std::make_unique<Firestore>(*cloudAuth_, cloud.http);
  social_ = std::make_unique<Social>(
      Social::Ports{*cloudAuth_, *firestore_, power_, defaults_, clock_, scheduler_, calendar_});
}

void AppDelegate::wireSocial() {
  if (!social_) return;
  social_->status = weakAsk(self_, MyStatus{}, [](AppDelegate& app) { return app.myStatus(); });
  cloudAuth_->onSignedIn = weakCall(self_, [](AppDelegate& app) { app.social_->signedIn(); });
  cloudAuth_->onSignedOut = weakCall(self_, [](AppDelegate& app) { app.social_->reset(); });
  if (cloudAuth_->signedIn()) social_->signedIn();
}

MyStatus AppDelegate::myStatus() const {
  MyStatus status = recordedStatus(log_, focus_, now(), calendar_);
  status.state = currentState();
  return status;
}

void AppDelegate::publishStatus() {
  if (!social_ || !cloudAuth_->signedIn()) return;
  const auto sent = social_->sentState();
  const bool quiet = power_.screenLocked() || power_.displaysAsleep();
  if (quiet && sent && (*sent == MateState::away || *sent == MateState::offline)) return;
  social_->publish(myStatus(), focus_.active().share && store_.shareStatus());
}

void AppDelegate::remindSessions() {
  if (!social_) return;
  for (const SessionTime& time : social_->upcoming(1))
    remind(time, time.at - now());
}

void AppDelegate::remind(const SessionTime& time, double until) {
  const bool soon = until > 0 && until <= soonSeconds;
  const bool started = until > startedSeconds && until <= 0;
  if (!soon && !started) return;
  const std::string key =
      time.session->id + "-" + Social::dayKey(time.at, calendar_) + (soon ? "-soon" : "-now");
  if (!reminded_.insert(key).second) return;
  // A reminder missed while the screen was locked doesn't come again.
  if (dropsFriendlyPills()) return;
  const std::string detail = time.group->name + " · 눌러서 모임 방 열기";
  auto openRoom = weakCall(self_, [](AppDelegate& app) { app.openPanel(PanelPage::groups); });
  if (soon) {
    const long long minutes = std::max(1LL, std::llround(until / 60));
    show(Pill(now(), Pill::Art::say(PillEyes::Mood::happy), Theme::white,
              format("「%s」 %lld분 뒤 시작해요", time.session->title.c_str(), minutes), detail),
         soonPillSeconds, openRoom);
  } else {
    show(Pill(now(), Pill::Art::say(PillEyes::Mood::love), Theme::white,
              "「" + time.session->title + "」 시작했어요", detail),
         startedPillSeconds, openRoom);
  }
}

MateLook AppDelegate::mateLook() const {
  return MateLook::mine(defaults_);
}

void AppDelegate::setMateLook(const MateLook& look) {
  MateLook::setMine(defaults_, look);
  if (social_) social_->republish();
}

GroupsPage AppDelegate::groupsPage() const {
  static const std::vector<StudyGroup> noGroups;
  static const std::map<std::string, std::vector<Member>> noMembers;
  GroupsPage::SignIn signIn;
  if (cloudAuth_) {
    signIn.signedIn = cloudAuth_->signedIn();
    const CloudAuth::Phase& phase = cloudAuth_->phase();
    if (phase.kind == CloudAuth::Phase::Kind::waiting) {
      signIn.waitingFor = CloudAuth::title(phase.provider);
    }
    if (phase.kind == CloudAuth::Phase::Kind::failed) signIn.failure = phase.message;
  }
  const bool sharing = focus_.active().share && store_.shareStatus();
  if (!social_) {
    return GroupsPage::make({signIn, sharing, false, std::nullopt, noGroups, noMembers,
                             std::nullopt, now(), calendar_});
  }
  return GroupsPage::make({signIn, sharing, social_->loaded(), social_->problem(),
                           social_->groups(), social_->members(), social_->me(), now(), calendar_});
}

RankingPage AppDelegate::rankingPage(const std::string& groupId, RankingPage::Period period) const {
  static const std::vector<StudyGroup> noGroups;
  static const std::map<std::string, std::vector<Member>> noMembers;
  if (!social_)
    return RankingPage::make({noGroups, noMembers, {}, now(), calendar_}, groupId, period);
  return RankingPage::make({social_->groups(), social_->members(), social_->me(), now(), calendar_},
                           groupId, period);
}

CalendarPage AppDelegate::calendarPage(Date selected) const {
  static const std::vector<StudyGroup> noGroups;
  return CalendarPage::make(social_ ? social_->groups() : noGroups, focus_, selected, now(),
                            calendar_);
}

}  // namespace sodam
