#include "app/page_records.h"

#include <algorithm>
#include <array>

namespace sodam {

namespace {

// The entries of the calendar day that holds `now`.
template <typename Visit>
void forToday(const PageRecords& records, Visit visit) {
  const Date start = records.calendar.startOfDay(records.now);
  const auto next = records.calendar.addingDays(start, 1);
  const Date end = next ? records.calendar.startOfDay(*next) : start + 86'400;
  for (const auto& entry : records.log.entries()) {
    if (start <= entry.t && entry.t < end) visit(entry);
  }
}

}  // namespace

std::optional<WorkDay> PageRecords::workDay(Date date) const {
  for (const auto& day : days) {
    if (calendar.isSameDay(day.day, date)) return day;
  }
  return std::nullopt;
}

std::vector<PostureLog::IssueCount> PageRecords::todaysIssues() const {
  std::array<int, IssueKind::count> counts{};
  forToday(*this, [&counts](const PostureEntry& entry) {
    if (entry.k != PostureEntry::Kind::alert) return;
    for (IssueKind kind : entry.i)
      ++counts[static_cast<std::size_t>(kind)];
  });
  std::vector<PostureLog::IssueCount> result;
  for (IssueKind kind : IssueKind::all()) {
    const int count = counts[static_cast<std::size_t>(kind)];
    if (count > 0) result.push_back({kind, count});
  }
  std::stable_sort(result.begin(), result.end(),
                   [](const auto& a, const auto& b) { return a.count > b.count; });
  return result;
}

int PageRecords::todaysCorrections() const {
  int corrections = 0;
  forToday(*this, [&corrections](const PostureEntry& entry) {
    if (entry.k == PostureEntry::Kind::corrected) ++corrections;
  });
  return corrections;
}

}  // namespace sodam
