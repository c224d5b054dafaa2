#include "coach/stretch_library.h"

#include <algorithm>
#include <utility>

namespace sodam {

namespace {

constexpr int perAreaLimit = 2;
constexpr std::size_t reasonLines = 2;
constexpr double plainBonus = 0.3;

// The stretches that come first when the record says nothing.
double bonus(std::string_view id) {
  static const std::pair<std::string_view, double> favourites[] = {
      {"chinTuck", 0.9}, {"chest", 0.8}, {"neckSide", 0.7}, {"catCow", 0.6}, {"eyes", 0.5}};
  for (const auto& [name, value] : favourites) {
    if (name == id) return value;
  }
  return plainBonus;
}

double score(const Stretch& stretch, const std::map<IssueKind, double>& weights) {
  double sum = bonus(stretch.id);
  for (IssueKind kind : stretch.helps) {
    if (auto found = weights.find(kind); found != weights.end()) sum += found->second;
  }
  return sum;
}

std::string_view reasonLine(IssueKind kind) {
  switch (kind) {
    case IssueKind::forwardHead:
    case IssueKind::leaning:
      return "머리가 자주 앞으로 나와 목 앞뒤를 풀어요";
    case IssueKind::slouch:
      return "등이 자주 굽어 가슴을 열고 등을 깨워요";
    case IssueKind::lookingDown:
      return "고개를 자주 숙여 목 뒤를 늘려요";
    case IssueKind::shoulderTilt:
      return "어깨가 자주 기울어 좌우 균형을 맞춰요";
    case IssueKind::headTilt:
      return "고개가 자주 기울어 목 옆을 풀어요";
    case IssueKind::lean:
      return "몸이 자주 한쪽으로 쏠려 옆구리를 늘려요";
    case IssueKind::tooClose:
      return "화면에 자주 다가가 눈을 쉬게 해요";
  }
  return "";
}

}  // namespace

const Stretch* StretchLibrary::find(std::string_view id) {
  const auto& stretches = all();
  auto found = std::find_if(stretches.begin(), stretches.end(),
                            [id](const Stretch& s) { return s.id == id; });
  return found == stretches.end() ? nullptr : &*found;
}

std::vector<Stretch> StretchLibrary::routine(const std::map<IssueKind, double>& weights,
                                             int count) {
  std::vector<std::pair<double, const Stretch*>> scored;
  for (const auto& stretch : all())
    scored.emplace_back(score(stretch, weights), &stretch);
  std::stable_sort(scored.begin(), scored.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<Stretch> taken;
  std::map<BodyArea, int> perArea;
  for (const auto& [value, stretch] : scored) {
    if (static_cast<int>(taken.size()) >= count) break;
    if (perArea[stretch->area] >= perAreaLimit) continue;
    ++perArea[stretch->area];
    taken.push_back(*stretch);
  }
  return taken;
}

std::vector<std::string> StretchLibrary::reasons(const std::map<IssueKind, double>& weights) {
  std::vector<std::pair<IssueKind, double>> sorted(weights.begin(), weights.end());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return a.second > b.second; });
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < sorted.size() && i < reasonLines; ++i)
    lines.emplace_back(reasonLine(sorted[i].first));
  return lines;
}

int StretchLibrary::totalSeconds(const std::vector<Stretch>& stretches) {
  int total = 0;
  for (const auto& stretch : stretches)
    total += stretch.totalSeconds();
  return total;
}

}  // namespace sodam
