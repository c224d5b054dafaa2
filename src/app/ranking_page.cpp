#include "app/ranking_page.h"

#include <algorithm>
#include <cmath>

#include "support/korean_format.h"
#include "support/text.h"

namespace sodam {

namespace {
const char* allFriends = "모든 친구";

struct Ranked {
  const Member* member;
  double value;
  std::string text;
};

std::string percent(double share) {
  return format("%d%%", static_cast<int>(std::lround(share * 100)));
}

std::vector<RankingPage::Row> rows(std::vector<Ranked> ranked, const std::optional<std::string>& me,
                                   Date now) {
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const Ranked& a, const Ranked& b) { return a.value > b.value; });
  std::vector<RankingPage::Row> out;
  for (std::size_t i = 0; i < ranked.size(); ++i) {
    const Member& m = *ranked[i].member;
    const bool tie = i > 0 && ranked[i].value == ranked[i - 1].value;
    const int rank = tie ? out.back().rank : static_cast<int>(i) + 1;
    out.push_back({rank, m.id, m.name, m.look, m.live(now), me && *me == m.id, ranked[i].text});
  }
  return out;
}

std::vector<Member> scoped(const RankingPage::Input& input, const std::string& groupId) {
  const auto it = input.members.find(groupId);
  if (it != input.members.end()) return it->second;
  return friendsOf(input.members);
}

// Members by name, so that equal values keep a stable, readable order.
void byName(std::vector<Member>& members) {
  std::stable_sort(members.begin(), members.end(),
                   [](const Member& a, const Member& b) { return a.name < b.name; });
}
}  // namespace

RankingPage RankingPage::make(const Input& input, const std::string& groupId, Period period) {
  RankingPage page;
  page.period = period;
  page.scopes.push_back({"", allFriends});
  for (const StudyGroup& group : input.groups)
    page.scopes.push_back({group.id, group.name});
  page.groupId = input.members.count(groupId) ? groupId : "";

  std::vector<Member> members = scoped(input, page.groupId);
  byName(members);
  const bool week = period == Period::week;
  std::vector<Ranked> good;
  std::vector<Ranked> focus;
  for (const Member& m : members) {
    const auto share =
        week ? m.weekGoodValue(input.now, input.calendar) : m.todayGood(input.now, input.calendar);
    if (share) good.push_back({&m, *share, percent(*share)});
    const int minutes = week ? m.weekFocusValue(input.now, input.calendar)
                             : m.todayFocus(input.now, input.calendar);
    focus.push_back({&m, static_cast<double>(minutes), hm(minutes)});
  }
  page.good = rows(std::move(good), input.me, input.now);
  page.focus = rows(std::move(focus), input.me, input.now);

  const bool alone = std::all_of(members.begin(), members.end(),
                                 [&](const Member& m) { return input.me && m.id == *input.me; });
  if (alone) {
    page.empty = {"같이 겨룰 친구가 아직 없어요",
                  "모임을 만들어 친구를 부르면 여기서 순위가 보여요."};
  }
  return page;
}

}  // namespace sodam
