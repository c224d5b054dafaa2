#include <array>

#include "posture/issue_kind.h"

namespace sodam {

namespace {
struct KindText {
  std::string_view raw;
  std::string_view title;
  std::string_view fix;
  std::string_view symbol;
};
constexpr std::array<KindText, IssueKind::count> kinds{{
    {"forwardHead", "거북목", "턱을 당겨 머리를 뒤로", "tortoise.fill"},
    {"leaning", "상체 숙임", "등을 등받이에 붙여요", "arrow.down.forward"},
    {"slouch", "구부정", "허리를 세우고 가슴을 펴요", "arrow.down.to.line"},
    {"lookingDown", "고개 숙임", "고개를 들어 화면을 봐요", "arrow.down.circle.fill"},
    {"shoulderTilt", "어깨 기울어짐", "두 어깨 높이를 맞춰요", "line.diagonal"},
    {"headTilt", "고개 기울어짐", "고개를 곧게 세워요", "face.smiling"},
    {"lean", "몸 쏠림", "몸을 가운데로 옮겨요", "arrow.left.arrow.right"},
    {"tooClose", "화면과 너무 가까움", "화면에서 조금 물러나요", "eye.fill"},
}};
}  // namespace

std::optional<IssueKind> IssueKind::fromRaw(std::string_view raw) {
  for (int i = 0; i < count; ++i)
    if (kinds[i].raw == raw) return IssueKind(static_cast<Value>(i));
  return std::nullopt;
}

const std::vector<IssueKind>& IssueKind::all() {
  static const std::vector<IssueKind> every{forwardHead,  leaning,  slouch, lookingDown,
                                            shoulderTilt, headTilt, lean,   tooClose};
  return every;
}

std::string_view IssueKind::raw() const {
  return kinds[value_].raw;
}

std::string_view IssueKind::title() const {
  return kinds[value_].title;
}

std::string_view IssueKind::fix() const {
  return kinds[value_].fix;
}

std::string_view IssueKind::symbol() const {
  return kinds[value_].symbol;
}

}  // namespace sodam
