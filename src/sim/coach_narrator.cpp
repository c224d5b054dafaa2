#include "sim/coach_narrator.h"

#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

using Kind = CoachSession::Phase::Kind;

std::string sideName(const Stretch& stretch, Side side) {
  if (!stretch.sides) return "";
  return side == Side::right ? " (오른쪽)" : " (왼쪽)";
}

std::string percent(double share) {
  return format("%lld%%", roundedInt(share * 100));
}

}  // namespace

CoachNarrator::CoachNarrator(CoachSession& session, Sink sink)
    : session_(session), sink_(std::move(sink)) {
  session_.onChange.subscribe([this, alive = alive_] {
    if (*alive) changed();
  });
  changed();
}

CoachNarrator::~CoachNarrator() {
  *alive_ = false;
}

std::string CoachNarrator::stretchName() const {
  const auto& items = session_.items();
  return format("%d/%zu ", session_.index() + 1, items.size()) + session_.current().name +
         sideName(session_.current(), session_.side());
}

void CoachNarrator::changed() {
  const auto kind = session_.phase().kind;
  const bool moved = kind != phase_ || session_.index() != index_ || session_.side() != side_;
  if (moved) {
    phase_ = kind;
    index_ = session_.index();
    side_ = session_.side();
    reps_ = 0;
    tellPhase();
  }
  if (kind == Kind::frame || kind == Kind::turn) {
    std::optional<std::string> hint;
    if (session_.framingHint()) hint = std::string(*session_.framingHint());
    if (hint && hint != hint_) sink_("  화면 안내: " + *hint);
    hint_ = hint;
  }
  if (kind != Kind::active) return;
  if (session_.cue() && session_.cue() != cue_) sink_("  \"" + *session_.cue() + "\"");
  cue_ = session_.cue();
  if (session_.reps() > reps_) {
    reps_ = session_.reps();
    sink_(format("  %d/%d회", reps_, session_.repTarget()));
  }
}

void CoachNarrator::tellPhase() {
  cue_.reset();
  switch (*phase_) {
    case Kind::frame:
      sink_("스트레칭: 카메라에 몸을 맞춰요");
      break;
    case Kind::turn:
      sink_("스트레칭: 옆으로 돌아앉아요");
      break;
    case Kind::ready:
      sink_("스트레칭 " + stretchName() + " · 준비");
      break;
    case Kind::switching:
      sink_("스트레칭 " + stretchName() + " · 반대쪽 준비");
      break;
    case Kind::rest:
      sink_("스트레칭 쉬는 시간 · 다음: " + session_.current().name);
      break;
    case Kind::active:
      if (session_.repTarget() > 0) {
        sink_("스트레칭 " + stretchName() + format(" · 시작, 목표 %d회", session_.repTarget()));
      } else {
        sink_("스트레칭 " + stretchName() + " · 시작, 시간으로");
      }
      break;
    case Kind::done: {
      const auto& accuracy = session_.accuracy();
      sink_(format("스트레칭 끝 · %d초", static_cast<int>(session_.elapsed())) +
            (accuracy ? " · 정확도 " + percent(*accuracy) : " · 정확도 없음"));
      break;
    }
    case Kind::intro:
      break;
  }
}

std::vector<std::string> CoachNarrator::summary(const CoachSession& session) {
  std::vector<std::string> lines;
  lines.push_back("── 스트레칭 요약 ──");
  for (const auto& r : session.results()) {
    const Stretch* stretch = nullptr;
    for (const auto& item : session.items()) {
      if (item.id == r.id) stretch = &item;
    }
    std::string line = (stretch ? stretch->name + sideName(*stretch, r.side) : r.id) + " · ";
    if (r.skipped) {
      line += "건너뜀";
    } else if (r.target > 0) {
      line += format("%d/%d회 · 정확도 %s", r.reps, r.target,
                     percent(static_cast<double>(r.reps) / r.target).c_str());
    } else {
      line += "시간으로";
    }
    line += format(" · %.0f초", r.seconds);
    if (r.missingSeconds >= 1) line += format(" · 안 보인 시간 %.0f초", r.missingSeconds);
    lines.push_back(line);
  }
  const auto& accuracy = session.accuracy();
  lines.push_back(format("모두 %d초", static_cast<int>(session.elapsed())) +
                  (accuracy ? " · 정확도 " + percent(*accuracy) : " · 정확도 없음"));
  return lines;
}

}  // namespace sodam
