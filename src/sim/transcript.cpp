#include "sim/transcript.h"

#include "sim/sim_machine.h"

#include "support/text.h"

namespace sodam {

namespace {
const char* tintName(StatusTint tint) {
  switch (tint) {
    case StatusTint::none:
      return "";
    case StatusTint::red:
      return ", 빨강";
    case StatusTint::orange:
      return ", 주황";
    case StatusTint::accent:
      return ", 강조색";
  }
  return "";
}

const char* eyesName(StatusIcon::Eyes eyes) {
  switch (eyes) {
    case StatusIcon::Eyes::open:
      return "뜬 눈";
    case StatusIcon::Eyes::looking:
      return "보는 눈";
    case StatusIcon::Eyes::closed:
      return "감은 눈";
  }
  return "";
}
}  // namespace

std::string Transcript::stamp() const {
  const auto c = calendar_.components(clock_.now());
  return format("[%02d:%02d:%02d] ", c.hour, c.minute, c.second);
}

void Transcript::say(const std::string& text) {
  sink_(stamp() + text);
}

// Every check turns the eyes to look and tints them for its two seconds;
// the check's own line says that, so only lasting changes are told.
void Transcript::drawStatus(const StatusItem::Refresh& refresh) {
  StatusLook look = refresh.look;
  if (look.eyes == StatusIcon::Eyes::looking) look.eyes = StatusIcon::Eyes::open;
  if (look.tint == StatusTint::accent) look.tint = StatusTint::none;
  const bool same = look_ && look_->eyes == look.eyes && look_->tint == look.tint &&
                    look_->tooltip == look.tooltip &&
                    look_->appearsDisabled == look.appearsDisabled;
  if (same) return;
  look_ = look;
  say(format("상태: %s (%s%s%s)", look.tooltip.c_str(), eyesName(look.eyes), tintName(look.tint),
             look.appearsDisabled ? ", 흐리게" : ""));
}

void Transcript::openPanel(PanelPage page) {
  say("창: " + std::string(pageTitle(page)) + " 페이지");
}

void Transcript::presentGuide(GuideModel&) {
  say("창: 바른 자세 배우기 안내");
}

void Transcript::closeGuide() {
  say("창: 안내를 닫았어요");
}

void Transcript::openUrl(const std::string& url) {
  say("열기: " + url);
}

void Transcript::terminate() {
  say("끝내기");
}

Size Transcript::contentSize(const Pill&) {
  return {260, 32};
}

Size Transcript::bubbleSize(const Pill&) {
  return {200, 44};
}

void Transcript::update(const PillModel& model, PillAnimation) {
  if (model.pill == shownPill_) return;
  shownPill_ = model.pill;
  if (!model.pill) return;
  const Pill& pill = *model.pill;
  std::string line = "알약 [" + pill.art.describe() + "]";
  if (pill.title) line += " " + *pill.title;
  if (pill.detail) line += " — " + *pill.detail;
  say(line);
}

std::vector<ScreenInfo> Transcript::screens() const {
  return {SimMachine::builtInScreen()};
}

std::vector<OverlayPresenter::Window> Transcript::makeBorderWindows() {
  say("빨간 테두리 켜짐");
  borderWindows_.insert(nextWindow_);
  return {nextWindow_++};
}

std::vector<OverlayPresenter::Window> Transcript::makeBlurWindows(bool, double) {
  return {nextWindow_++};
}

void Transcript::orderOut(Window window) {
  if (borderWindows_.erase(window) > 0) say("빨간 테두리 꺼짐");
}

}  // namespace sodam
