#include "cloud/social.h"

#include <algorithm>
#include <random>

#include "cloud/group_documents.h"
#include "companion/mate_look.h"

namespace sodam {

namespace {
const char* unreachable = "서버와 연결하지 못했어요";
constexpr double noShare = -1;

using Groups = std::vector<StudyGroup>;
using MemberMap = std::map<std::string, std::vector<Member>>;
}  // namespace

Social::Social(Ports ports)
    : auth_(ports.auth),
      store_(ports.store),
      power_(ports.power),
      defaults_(ports.defaults),
      clock_(ports.clock),
      scheduler_(ports.scheduler),
      calendar_(std::move(ports.calendar)),
      random_(std::move(ports.random)) {}

Social::~Social() {
  *self_ = nullptr;
}

Social::Random Social::systemRandom() {
  return [](std::uint64_t bound) -> std::uint64_t {
    // The system's secure source; the distribution rejects, so it is unbiased.
    static std::random_device device;
    std::uniform_int_distribution<std::uint64_t> pick(0, bound - 1);
    return pick(device);
  };
}

std::optional<std::string> Social::me() const {
  if (!auth_.user()) return std::nullopt;
  return auth_.user()->uid;
}

std::optional<MateState> Social::sentState() const {
  if (!lastPublished_) return std::nullopt;
  return lastPublished_->first.state;
}

std::string Social::dayKey(Date date, const Calendar& calendar) {
  return studyDayKey(date, calendar);
}

std::string Social::weekKey(Date date, const Calendar& calendar) {
  return studyWeekKey(date, calendar);
}

std::vector<SessionTime> Social::upcoming(int days) const {
  return upcomingSessions(groups_, now(), days, calendar_);
}

std::vector<SessionTime> Social::sessions(Date day) const {
  return sessionsOn(groups_, day, calendar_);
}

void Social::signedIn() {
  startTimer();
  refresh();
}

void Social::reset() {
  timer_.invalidate();
  timerSeconds_.reset();
  groups_.clear();
  members_.clear();
  loaded_ = false;
  lastPublished_.reset();
  onChange.notify();
}

void Social::watch(bool on) {
  watchers_ = std::max(0, watchers_ + (on ? 1 : -1));
  startTimer();
  if (on) refresh();
}

void Social::startTimer() {
  timer_.invalidate();
  timerSeconds_.reset();
  if (!me()) return;
  const double seconds = watchers_ < 1 ? idleRefreshSeconds : watchedRefreshSeconds;
  timerSeconds_ = seconds;
  timer_ = scheduler_.schedule({seconds, seconds, refreshToleranceSeconds},
                               weakCall(self_, [](Social& social) { social.refresh(); }));
}

void Social::refresh(std::function<void()> done) {
  const auto uid = me();
  if (!uid || refreshing_ || power_.screenLocked() || power_.displaysAsleep()) {
    if (done) done();
    return;
  }
  refreshing_ = true;
  store_.whereContains(
      "groups", "members", *uid,
      weakCall(self_, [done](Social& social, CloudResult<std::vector<Firestore::Doc>> found) {
        if (!found.ok()) return social.refreshed(std::nullopt, found.error(), done);
        Groups groups;
        for (const auto& doc : found.value())
          groups.push_back(GroupDocuments::group(doc));
        std::stable_sort(groups.begin(), groups.end(),
                         [](const StudyGroup& a, const StudyGroup& b) { return a.name < b.name; });
        social.listMembers(std::move(groups), 0, {}, done);
      }));
}

void Social::listMembers(Groups groups, std::size_t next, MemberMap members,
                         std::function<void()> done) {
  if (next == groups.size()) {
    return refreshed(std::make_pair(std::move(groups), std::move(members)), std::nullopt, done);
  }
  const std::string gid = groups[next].id;
  store_.list(
      "groups/" + gid + "/members",
      weakCall(self_, [groups = std::move(groups), next, members = std::move(members), done, gid](
                          Social& social, CloudResult<std::vector<Firestore::Doc>> listed) {
        if (!listed.ok()) return social.refreshed(std::nullopt, listed.error(), done);
        MemberMap gathered = members;
        auto& list = gathered[gid];
        for (const auto& doc : listed.value())
          list.push_back(GroupDocuments::member(doc));
        social.listMembers(groups, next + 1, std::move(gathered), done);
      }));
}

void Social::refreshed(std::optional<std::pair<Groups, MemberMap>> result,
                       const std::optional<CloudError>& error, const std::function<void()>& done) {
  bool changed = false;
  if (result) {
    if (result->first != groups_) {
      groups_ = std::move(result->first);
      changed = true;
    }
    if (result->second != members_) {
      members_ = std::move(result->second);
      changed = true;
    }
    changed = changed || problem_.has_value();
    problem_.reset();
  } else {
    const std::string text = error ? error->text() : unreachable;
    changed = problem_ != text;
    problem_ = text;
  }
  lastRefresh_ = now();
  changed = changed || !loaded_;
  loaded_ = true;
  refreshing_ = false;
  if (changed) onChange.notify();
  if (done) done();
}

Firestore::Fields Social::statusFields(const MyStatus& s) const {
  const Date t = now();
  return {
      {"name", myName()},
      {"look", GroupDocuments::look(MateLook::mine(defaults_))},
      {"state", std::string(s.state.raw())},
      {"mode", static_cast<int>(s.mode)},
      {"at", t},
      {"day", dayKey(t, calendar_)},
      {"good", s.good.value_or(noShare)},
      {"focus", s.focus},
      {"checks", s.checks},
      {"turtle", s.turtle},
      {"phone", s.phone},
      {"week", weekKey(t, calendar_)},
      {"weekGood", s.weekGood.value_or(noShare)},
      {"weekFocus", s.weekFocus},
      {"place", s.place.value_or("")},
  };
}

std::string Social::myName() const {
  return auth_.user() ? auth_.user()->name : "친구";
}

void Social::publish(const MyStatus& status, bool share) {
  const auto uid = me();
  if (!uid || groups_.empty() || publishing_) return;
  Firestore::Fields fields;
  if (share) {
    if (lastPublished_) {
      const MyStatus& last = lastPublished_->first;
      const bool same =
          last.state == status.state && last.mode == status.mode && last.place == status.place;
      if (same && now() - lastPublished_->second < resendSeconds) return;
    }
    fields = statusFields(status);
  } else {
    if (lastPublished_ && lastPublished_->first.state == MateState::offline) return;
    fields = {{"name", myName()}, {"state", "offline"}, {"at", now()}};
  }
  std::vector<std::string> mask;
  for (const auto& [key, value] : fields)
    mask.push_back(key);
  std::vector<Firestore::Write> writes;
  for (const StudyGroup& group : groups_) {
    writes.push_back(
        Firestore::Write::update("groups/" + group.id + "/members/" + *uid, fields, mask));
  }
  publishing_ = true;
  store_.commit(std::move(writes),
                weakCall(self_, [status, share](Social& social, std::optional<CloudError> error) {
                  social.published(status, share, std::move(error));
                }));
}

void Social::published(const MyStatus& status, bool shared, std::optional<CloudError> error) {
  publishing_ = false;
  if (error) return;  // the next tick tries again
  MyStatus sent = status;
  if (!shared) sent.state = MateState::offline;
  lastPublished_ = std::make_pair(sent, now());
}

std::string joinErrorText(const Social::Joined& joined) {
  if (joined.refused == Social::JoinError::notFound) return "그 코드의 모임을 찾지 못했어요";
  if (joined.refused == Social::JoinError::full) return "모임이 가득 찼거나 들어갈 수 없어요";
  return "들어가지 못했어요";
}

}  // namespace sodam
