#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cloud/cloud_auth.h"
#include "cloud/firestore.h"
#include "cloud/study_group.h"
#include "platform/defaults.h"
#include "platform/power.h"
#include "support/calendar.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// The study groups of the signed-in user: their documents and members'
// statuses, read by a timer that runs faster while a page looks; the user's
// own status, published with a throttle; and the operations that make, join,
// leave, close and edit a group. Main thread only; every reply comes there.
class Social {
 public:
  enum class JoinError { notFound, full };
  // The end of a join: the group, or why not.
  struct Joined {
    std::optional<StudyGroup> group;
    std::optional<JoinError> refused;
    std::optional<CloudError> error;
  };
  // A uniform whole number below the bound, from a secure source.
  using Random = std::function<std::uint64_t(std::uint64_t bound)>;

  struct Ports {
    CloudAuth& auth;
    Firestore& store;
    const Power& power;
    const Defaults& defaults;  // the user's study-room look
    const Clock& clock;
    Scheduler& scheduler;
    Calendar calendar;
    Random random = systemRandom();
  };

  static constexpr double idleRefreshSeconds = 60;
  static constexpr double watchedRefreshSeconds = 15;
  static constexpr double refreshToleranceSeconds = 3;
  // An unchanged status goes out again after this long, well inside the
  // time after which friends see the user as gone.
  static constexpr double resendSeconds = 180;
  static constexpr int codeDraws = 5;
  static constexpr std::uint64_t codeRange = 100'000'000;
  static constexpr int idLength = 20;

  explicit Social(Ports ports);
  ~Social();
  Social(const Social&) = delete;
  Social& operator=(const Social&) = delete;

  // Sorted by name.
  const std::vector<StudyGroup>& groups() const { return groups_; }
  const std::map<std::string, std::vector<Member>>& members() const { return members_; }
  // A refresh has ended at least once.
  bool loaded() const { return loaded_; }
  // The last refresh's error text.
  const std::optional<std::string>& problem() const { return problem_; }
  int watchers() const { return watchers_; }
  bool publishing() const { return publishing_; }
  bool refreshing() const { return refreshing_; }
  Date lastRefresh() const { return lastRefresh_; }
  const std::optional<std::pair<MyStatus, Date>>& lastPublished() const { return lastPublished_; }
  // The seconds of the running refresh timer; nothing while none runs.
  std::optional<double> refreshInterval() const { return timerSeconds_; }
  // Any change of the groups, members, `loaded` or `problem`.
  ChangeSignal onChange;
  // The user's status now, set by the application.
  std::function<MyStatus()> status;

  std::optional<std::string> me() const;
  std::optional<MateState> sentState() const;

  // At start with a stored session and after a sign-in.
  void signedIn();
  // After a sign-out: empty, no timer. `problem` stays.
  void reset();
  // A group page appears (true) or goes (false).
  void watch(bool on);
  // Never fails: an error lands in `problem`. `done` runs when it ends, or at
  // once when it does nothing.
  void refresh(std::function<void()> done = {});

  void create(const std::string& name, std::function<void(CloudResult<StudyGroup>)> done);
  // Blanks and dashes in the code don't matter.
  void join(const std::string& code, std::function<void(Joined)> done);
  // A member leaves; the owner closes the group for all.
  void leave(const StudyGroup& group, CloudDone done);
  // Nothing keeps the group's name or sessions.
  void save(const StudyGroup& group, std::optional<std::string> name,
            std::optional<std::vector<GroupSession>> sessions, CloudDone done);

  // Called every ten seconds; sends only on a change friends can see or when
  // the last send grows old. `share` false sends "offline" once.
  void publish(const MyStatus& status, bool share);
  // The next publish sends whatever it holds.
  void republish() { lastPublished_.reset(); }

  std::vector<Member> friends() const { return friendsOf(members_); }
  std::vector<SessionTime> upcoming(int days) const;
  std::vector<SessionTime> sessions(Date day) const;
  static std::string dayKey(Date date, const Calendar& calendar);
  static std::string weekKey(Date date, const Calendar& calendar);

  // The member document's fields for a status, stamped now.
  Firestore::Fields statusFields(const MyStatus& status) const;
  static Random systemRandom();

 private:
  void startTimer();
  void listMembers(std::vector<StudyGroup> groups, std::size_t next,
                   std::map<std::string, std::vector<Member>> members, std::function<void()> done);
  void refreshed(
      std::optional<std::pair<std::vector<StudyGroup>, std::map<std::string, std::vector<Member>>>>
          result,
      const std::optional<CloudError>& error, const std::function<void()>& done);
  void drawCode(int draw, std::function<void(CloudResult<std::string>)> done);
  void created(const StudyGroup& group, std::function<void(CloudResult<StudyGroup>)> done);
  void joinGroup(const std::string& uid, const std::string& code, const std::string& gid,
                 std::function<void(Joined)> done);
  void closeGroup(const StudyGroup& group, CloudDone done);
  void dropGroup(const std::string& gid);
  void published(const MyStatus& status, bool shared, std::optional<CloudError> error);
  std::string randomId() const;
  std::string myName() const;
  Date now() const { return clock_.now(); }

  CloudAuth& auth_;
  Firestore& store_;
  const Power& power_;
  const Defaults& defaults_;
  const Clock& clock_;
  Scheduler& scheduler_;
  Calendar calendar_;
  Random random_;

  std::vector<StudyGroup> groups_;
  std::map<std::string, std::vector<Member>> members_;
  bool loaded_ = false;
  std::optional<std::string> problem_;
  int watchers_ = 0;
  Timer timer_;
  std::optional<double> timerSeconds_;
  std::optional<std::pair<MyStatus, Date>> lastPublished_;
  bool publishing_ = false;
  bool refreshing_ = false;
  Date lastRefresh_ = Date::distantPast();
  LifeToken<Social> self_ = lifeToken(this);
};

// The words a page shows for a failed join.
std::string joinErrorText(const Social::Joined& joined);

}  // namespace sodam
