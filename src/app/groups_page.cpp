#include "app/groups_page.h"

#include <algorithm>
#include <cmath>

#include "support/korean_format.h"
#include "support/text.h"

namespace sodam {

namespace {
GroupsPage::Card card(const GroupsPage::SignIn& signIn) {
  GroupsPage::Card card;
  if (signIn.waitingFor) {
    card.waiting =
        fill("브라우저에서 {provider} 로그인을 마쳐 주세요", {{"provider", *signIn.waitingFor}});
  }
  card.failure = signIn.failure;
  return card;
}

std::string numbers(const Member& m, Date now, const Calendar& calendar) {
  std::string text = "집중 " + hm(m.todayFocus(now, calendar));
  if (const auto good = m.todayGood(now, calendar)) {
    text += format(" · 바른 자세 %d%%", static_cast<int>(std::lround(*good * 100)));
  }
  return text;
}

bool atDesk(MateState state) {
  return state != MateState::away && state != MateState::offline;
}

std::string when(const GroupSession& s, const Calendar& calendar) {
  std::string day;
  switch (s.repeats) {
    case GroupSession::Repeat::none: {
      const DateComponents c = calendar.components(s.start);
      day = format("%d월 %d일", c.month, c.day);
      break;
    }
    case GroupSession::Repeat::weekly:
      day = "매주 " + Fmt::weekday(s.start, calendar);
      break;
    default:
      day = std::string(s.repeats.title());
  }
  return day + " " + Fmt::clock(s.start, calendar) + " · " + hm(s.minutes);
}

GroupsPage::Room room(const StudyGroup& group, const GroupsPage::Input& input) {
  GroupsPage::Room room;
  room.id = group.id;
  room.name = group.name;
  room.code = group.codeText();
  room.inviteLink = group.inviteLink();
  room.owner = input.me && *input.me == group.owner;
  room.leave = room.owner ? "모임 닫기" : "모임 나가기";
  room.leaveConfirm =
      room.owner ? "모임을 닫을까요? 모든 멤버가 나가게 돼요." : "모임에서 나갈까요?";
  const auto found = input.members.find(group.id);
  static const std::vector<Member> none;
  const std::vector<Member>& members = found == input.members.end() ? none : found->second;
  for (const Member& m : members) {
    const MateState live = m.live(input.now);
    GroupsPage::Seat seat{m.id,
                          m.name,
                          m.look,
                          live,
                          std::string(live.title()),
                          std::string(live.symbol()),
                          input.me && *input.me == m.id,
                          numbers(m, input.now, input.calendar)};
    (atDesk(live) ? room.seats : room.away).push_back(std::move(seat));
  }
  for (const GroupSession& s : group.sessions) {
    room.sessions.push_back({s.id, s.title, when(s, input.calendar)});
  }
  if (room.sessions.empty()) room.noSessions = "아직 일정이 없어요";
  const RankingPage ranking =
      RankingPage::make({input.groups, input.members, input.me, input.now, input.calendar},
                        group.id, RankingPage::Period::today);
  room.focusRanking = ranking.focus;
  return room;
}
}  // namespace

GroupsPage GroupsPage::make(const Input& input) {
  GroupsPage page;
  if (!input.signIn.signedIn) {
    page.signIn = card(input.signIn);
    return page;
  }
  page.sharing = input.sharing ? "친구에게 내 상태가 보여요" : "친구에게 숨겨 두었어요";
  page.loading = !input.loaded;
  page.problem = input.problem;
  if (input.loaded && input.groups.empty()) {
    page.empty = {"아직 모임이 없어요",
                  "모임을 만들어 친구에게 여덟 자리 코드를 보내거나, 받은 코드로 들어가요."};
  }
  for (const StudyGroup& group : input.groups)
    page.rooms.push_back(room(group, input));
  return page;
}

}  // namespace sodam
