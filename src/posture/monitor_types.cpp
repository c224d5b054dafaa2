#include "posture/monitor_types.h"

#include <algorithm>
#include <cmath>

#include "support/numeric.h"

namespace sodam {

std::string MonitorOutcome::text() const {
  switch (kind_) {
    case Kind::alerted: {
      std::string text = "자세 알림 · ";
      if (reading_ && !reading_->issues.empty()) text += reading_->issues.front().kind.title();
      return text;
    }
    case Kind::relearnNeeded:
      return "바른 자세를 다시 잡아야 해요";
    case Kind::skipped:
    case Kind::failed:
      return message_.value_or("");
    case Kind::good:
      return "바른 자세예요";
    case Kind::corrected:
      return "알림 뒤 자세를 바로잡았어요";
    case Kind::absent:
      return "자리에 없어 건너뛰었어요";
    case Kind::lookingAway:
      return "다른 곳을 보고 있어 다음에 볼게요";
    case Kind::tooFar:
      return "화면에서 멀어 자세를 보기 어려웠어요";
    case Kind::relearned:
      return "바른 자세를 다시 잡았어요";
  }
  return {};
}

void SeverityBlur::reset() {
  smooth_.reset();
  peak_ = initialPeak;
}

double SeverityBlur::level(double severity) {
  smooth_ = smooth_ ? *smooth_ + 0.4 * (severity - *smooth_) : severity;
  peak_ = std::min(std::max(peak_, *smooth_), 2.5);
  const double linear = clamp((*smooth_ - 0.85) / (peak_ - 0.85), 0, 1);
  return std::pow(linear, 0.75);
}

}  // namespace sodam
