#include "app/status_item.h"

#include "support/text.h"

namespace sodam {
namespace {

bool switchedOff(const StatusFacts& facts) {
  return !facts.enabled || facts.cameraRevoked;
}

StatusIcon::Eyes eyesFor(const StatusFacts& facts) {
  if (switchedOff(facts)) return StatusIcon::Eyes::closed;
  if (facts.phase == Monitor::Phase::idle) return StatusIcon::Eyes::open;
  return StatusIcon::Eyes::looking;
}

StatusTint tintFor(const StatusFacts& facts) {
  if (facts.phase == Monitor::Phase::alerting) return StatusTint::red;
  if (facts.unseenCameraUses >= 1) return StatusTint::orange;
  if (facts.phase == Monitor::Phase::idle) return StatusTint::none;
  return StatusTint::accent;
}

}  // namespace

bool StatusFacts::canCheckNow() const {
  return enabled && phase == Monitor::Phase::idle && !held && !cameraRevoked;
}

const PresetChoice* StatusFacts::activePreset() const {
  if (!activePresetId) return nullptr;
  for (const auto& preset : presets)
    if (preset.id == *activePresetId) return &preset;
  return nullptr;
}

std::string statusLine(const StatusFacts& facts) {
  if (!facts.hasBaseline) return "바른 자세를 먼저 알려 주세요";
  if (facts.enabled && facts.held) return "자세 확인 켜짐 · 잠시 쉬는 중";
  if (facts.enabled && facts.checkMode == CheckMode::live) return "자세 확인 켜짐 · 실시간";
  if (facts.enabled) return "자세 확인 켜짐";
  return "자세 확인 꺼짐";
}

StatusLook statusLook(const StatusFacts& facts) {
  StatusLook look;
  look.eyes = eyesFor(facts);
  look.ears = facts.ears;
  look.tint = tintFor(facts);
  look.appearsDisabled = switchedOff(facts);
  look.tooltip =
      fill("소담자리 · {statusLine} · 눌러서 메뉴 열기", {{"statusLine", statusLine(facts)}});
  return look;
}

StatusItem::Refresh StatusItem::refresh(const StatusFacts& facts) {
  Refresh result{statusLook(facts), false};
  result.redrawImage = iconEyes_ != result.look.eyes || iconEars_ != result.look.ears;
  if (result.redrawImage) drawn(result.look.eyes, result.look.ears);
  return result;
}

void StatusItem::drawn(StatusIcon::Eyes eyes, int ears) {
  iconEyes_ = eyes;
  iconEars_ = ears;
}

}  // namespace sodam
