#include "linux/group_social_command.h"

#include <ostream>

#include "app/groups_page.h"
#include "app/ranking_page.h"
#include "app/together_status.h"
#include "cloud/social.h"
#include "linux/linux_power_source.h"
#include "linux/record_store.h"
#include "platform/store.h"

namespace sodam {

namespace {
constexpr double callSeconds = 30;

// The study groups over the session, with the records of the data directory.
struct GroupsRig {
  GroupsRig(CloudSession& session, Defaults& defaults)
      : session(session),
        defaults(defaults),
        calendar(localCalendar()),
        log(defaults, session.clock, calendar),
        focus(defaults, session.clock, calendar),
        social({session.auth, session.firestore, power, defaults, session.clock, session.scheduler,
                calendar}) {
    social.status = [this] {
      MyStatus status = recordedStatus(log, focus, this->session.clock.now(), calendar);
      status.state = MateState::offline;
      return status;
    };
  }
  // Runs the loop until the call's reply came; false after the time-out.
  bool wait(const bool& replied) {
    return session.runUntil([&] { return replied; }, callSeconds);
  }
  bool refresh() {
    bool done = false;
    social.refresh([&] { done = true; });
    return wait(done);
  }

  CloudSession& session;
  Defaults& defaults;
  Calendar calendar;
  LinuxPowerSource source;
  Power power{source};
  PostureLog log;
  FocusCenter focus;
  Social social;
};

void printRoom(const GroupsPage::Room& room, const std::string& joinPage, std::ostream& out) {
  out << room.name << " · 코드 " << room.code << (room.owner ? " · 내가 만든 모임" : "") << "\n";
  out << "  " << room.invite << ": " << joinPage
      << room.inviteLink.substr(room.inviteLink.find('?')) << "\n";
  for (const auto& seat : room.seats) {
    out << "  " << seat.name << (seat.me ? " (나)" : "") << " · " << seat.state << " · "
        << seat.numbers << "\n";
  }
  for (const auto& seat : room.away) {
    out << "  " << seat.name << (seat.me ? " (나)" : "") << " · " << seat.state
        << " (자리에 없어요)\n";
  }
  for (const auto& session : room.sessions)
    out << "  일정: " << session.title << " · " << session.when << "\n";
  if (room.noSessions) out << "  " << *room.noSessions << "\n";
}

int status(GroupsRig& rig, bool detailed, std::ostream& out, std::ostream& err) {
  rig.refresh();
  if (rig.social.problem()) {
    err << "sodamjari: " << *rig.social.problem() << "\n";
    return 1;
  }
  const Date now = rig.session.clock.now();
  const GroupsPage page =
      GroupsPage::make({{true, {}, {}},
                        Store(rig.defaults, rig.session.clock, rig.calendar).shareStatus(),
                        true,
                        std::nullopt,
                        rig.social.groups(),
                        rig.social.members(),
                        rig.social.me(),
                        now,
                        rig.calendar});
  if (page.empty) {
    out << page.empty->first << "\n" << page.empty->second << "\n";
    return 0;
  }
  const std::string joinPage = rig.session.auth.config().joinPage();
  for (const auto& room : page.rooms) {
    if (!detailed) {
      out << room.name << " · 코드 " << room.code << " · 멤버 "
          << room.seats.size() + room.away.size() << "명" << (room.owner ? " · 내가 만든 모임" : "")
          << "\n";
      continue;
    }
    printRoom(room, joinPage, out);
    out << "  " << page.rankingTitle << ":";
    for (const auto& row : room.focusRanking)
      out << " " << row.rank << ". " << row.name << " " << row.value;
    out << "\n";
  }
  return 0;
}

// The group a leave names by its code, or the only one.
const StudyGroup* chosen(const std::vector<StudyGroup>& groups,
                         const std::vector<std::string>& words) {
  if (words.size() < 2) return groups.size() == 1 ? &groups.front() : nullptr;
  std::string digits;
  for (char c : words[1]) {
    if (c >= '0' && c <= '9') digits += c;
  }
  for (const StudyGroup& group : groups) {
    if (group.code == digits) return &group;
  }
  return nullptr;
}

int create(GroupsRig& rig, const std::string& name, std::ostream& out, std::ostream& err) {
  bool replied = false;
  std::optional<CloudResult<StudyGroup>> result;
  rig.social.create(name, [&](CloudResult<StudyGroup> r) {
    result = std::move(r);
    replied = true;
  });
  if (!rig.wait(replied) || !result->ok()) {
    err << "sodamjari: " << GroupSheets::createFailed
        << (result ? " (" + result->error().text() + ")" : "") << "\n";
    return 1;
  }
  const StudyGroup& group = result->value();
  out << "모임을 만들었어요: " << group.name << " · 초대 코드 " << group.codeText() << "\n"
      << "초대 링크: " << rig.session.auth.config().joinPage() << "?code=" << group.code << "\n";
  return 0;
}

int join(GroupsRig& rig, const std::string& code, std::ostream& out, std::ostream& err) {
  bool replied = false;
  Social::Joined joined;
  rig.social.join(code, [&](Social::Joined j) {
    joined = std::move(j);
    replied = true;
  });
  if (!rig.wait(replied) || !joined.group) {
    err << "sodamjari: " << joinErrorText(joined) << "\n";
    return 1;
  }
  out << "모임에 들어갔어요: " << joined.group->name << "\n";
  return 0;
}

int leave(GroupsRig& rig, const std::vector<std::string>& words, std::ostream& out,
          std::ostream& err) {
  rig.refresh();
  const StudyGroup* group = chosen(rig.social.groups(), words);
  if (!group) {
    err << "sodamjari: 어느 모임인지 코드로 알려 주세요 (sodamjari group list)\n";
    return 2;
  }
  const StudyGroup target = *group;
  const bool owner = rig.social.me() == target.owner;
  bool replied = false;
  std::optional<CloudError> error;
  rig.social.leave(target, [&](std::optional<CloudError> e) {
    error = std::move(e);
    replied = true;
  });
  if (!rig.wait(replied) || error) {
    err << "sodamjari: " << (error ? error->text() : "서버와 연결하지 못했어요") << "\n";
    return 1;
  }
  out << (owner ? "모임을 닫았어요: " : "모임에서 나왔어요: ") << target.name << "\n";
  return 0;
}
}  // namespace

int runGroupSocial(CloudSession& session, const std::filesystem::path& dataDirectory,
                   const std::vector<std::string>& words, std::ostream& out, std::ostream& err) {
  if (!session.auth.signedIn()) {
    err << "sodamjari: 로그인이 필요해요 (sodamjari group signin)\n";
    return 1;
  }
  const RecordStore store = RecordStore::open(dataDirectory, true);
  if (const int status = store.complain("group", err)) return status;
  GroupsRig rig(session, *store.defaults);
  const std::string& verb = words.front();
  if (verb == "create" && words.size() >= 2) return create(rig, words[1], out, err);
  if (verb == "join" && words.size() >= 2) return join(rig, words[1], out, err);
  if (verb == "leave") return leave(rig, words, out, err);
  if (verb == "list") return status(rig, false, out, err);
  if (verb == "status") return status(rig, true, out, err);
  err << "usage: sodamjari group create NAME | join CODE | leave [CODE] | list | status\n";
  return 2;
}

}  // namespace sodam
