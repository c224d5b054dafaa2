#include "posture/issue_kind.h"

#include <gtest/gtest.h>

#include "platform/alert_style.h"
#include "platform/check_mode.h"
#include "platform/sensitivity.h"

namespace sodam {
namespace {

TEST(IssueKind, EveryKindHasItsRawNameTitleFixAndSymbolInOrder) {
  struct Row {
    const char* raw;
    const char* title;
    const char* fix;
    const char* symbol;
  };
  const Row rows[] = {
      {"forwardHead", "거북목", "턱을 당겨 머리를 뒤로", "tortoise.fill"},
      {"leaning", "상체 숙임", "등을 등받이에 붙여요", "arrow.down.forward"},
      {"slouch", "구부정", "허리를 세우고 가슴을 펴요", "arrow.down.to.line"},
      {"lookingDown", "고개 숙임", "고개를 들어 화면을 봐요", "arrow.down.circle.fill"},
      {"shoulderTilt", "어깨 기울어짐", "두 어깨 높이를 맞춰요", "line.diagonal"},
      {"headTilt", "고개 기울어짐", "고개를 곧게 세워요", "face.smiling"},
      {"lean", "몸 쏠림", "몸을 가운데로 옮겨요", "arrow.left.arrow.right"},
      {"tooClose", "화면과 너무 가까움", "화면에서 조금 물러나요", "eye.fill"},
  };
  ASSERT_EQ(IssueKind::all().size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const IssueKind kind = IssueKind::all()[i];
    EXPECT_EQ(kind.raw(), rows[i].raw);
    EXPECT_EQ(kind.title(), rows[i].title) << rows[i].raw;
    EXPECT_EQ(kind.fix(), rows[i].fix) << rows[i].raw;
    EXPECT_EQ(kind.symbol(), rows[i].symbol) << rows[i].raw;
    EXPECT_EQ(IssueKind::fromRaw(rows[i].raw), kind);
  }
  EXPECT_EQ(IssueKind::fromRaw("ForwardHead"), std::nullopt);
  EXPECT_EQ(IssueKind::fromRaw(""), std::nullopt);
}

TEST(SettingKinds, TitlesFactorsAndRawValuesOfTheStoredChoices) {
  struct Level {
    int raw;
    double factor;
    const char* title;
  };
  for (const Level level : {Level{0, 0.75, "예민하게"}, Level{1, 1.0, "보통"},
                            Level{2, 1.35, "여유 있게"}}) {
    const auto sensitivity = Sensitivity::fromRaw(level.raw);
    ASSERT_TRUE(sensitivity);
    EXPECT_EQ(sensitivity->factor(), level.factor);
    EXPECT_EQ(sensitivity->title(), level.title);
  }
  EXPECT_EQ(Sensitivity::fromRaw(3), std::nullopt);
  EXPECT_EQ(Sensitivity::fromRaw(-1), std::nullopt);

  EXPECT_EQ(AlertStyle::fromRaw(0)->title(), "빨간 테두리 깜빡임");
  EXPECT_EQ(AlertStyle::fromRaw(1)->title(), "화면 흐리게");
  EXPECT_EQ(AlertStyle::fromRaw(2), std::nullopt);
  EXPECT_EQ(CheckMode::fromRaw(0)->title(), "가볍게");
  EXPECT_EQ(CheckMode::fromRaw(1)->title(), "실시간");
  EXPECT_EQ(CheckMode::fromRaw(2), std::nullopt);
}

}  // namespace
}  // namespace sodam
