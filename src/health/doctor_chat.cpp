#include "health/doctor_chat.h"

#include <algorithm>

#include "support/utf8.h"

namespace sodam {

namespace {

constexpr std::string_view fixedInstructions =
    "너는 소담자리 앱의 자세 상담 도우미다. 사용자의 자세 기록을 바탕으로 한국어 해요체로 짧고 "
    "따뜻하게 답한다.\n진단하지 말고 자세와 근육의 일반적인 관계, 스트레칭, 생활 습관만 안내한다. "
    "저림, 힘 빠짐, 밤에 심해지는 통증,\n갑작스러운 극심한 두통 같은 신호가 나오면 진료를 권한다. "
    "답은 네 문장 안팎으로 한다. 마크다운 기호는 쓰지 않는다.\n사용자 기록: ";

std::string joined(const std::vector<std::string>& parts, std::string_view glue) {
  std::string out;
  for (const auto& part : parts) {
    if (!out.empty()) out += glue;
    out += part;
  }
  return out;
}

}  // namespace

DoctorChat::DoctorChat(HabitReport report, LanguageModel* model)
    : report_(std::move(report)), model_(model) {}

// A reply still on its way finds nobody.
DoctorChat::~DoctorChat() {
  *self_ = nullptr;
}

void DoctorChat::setDraft(std::string text) {
  if (text == draft_) return;
  draft_ = std::move(text);
  onChange.notify(Change::draft);
}

std::vector<DoctorChat::Step> DoctorChat::steps() const {
  if (!area_ || Consult::asksSide(*area_))
    return {Step::area, Step::side, Step::feeling, Step::when};
  return {Step::area, Step::feeling, Step::when};
}

std::vector<std::string> DoctorChat::trail() const {
  std::vector<std::string> values;
  if (area_) values.emplace_back(Consult::raw(*area_));
  if (side_) values.emplace_back(Consult::raw(*side_));
  if (feeling_) values.emplace_back(Consult::raw(*feeling_));
  if (when_) values.emplace_back(Consult::raw(*when_));
  return values;
}

std::string DoctorChat::greeting() const {
  if (report_.habits.empty()) return "어디가 불편하세요?";
  return "기록을 보니 " + report_.habits.front().title + "이 있어요.\n오늘은 어디가 불편하세요?";
}

bool DoctorChat::canTalk() const {
  return model_ && model_->available();
}

void DoctorChat::go(Step step) {
  step_ = step;
  onChange.notify(Change::step);
}

void DoctorChat::choose(Consult::Area area) {
  area_ = area;
  side_.reset();
  go(Consult::asksSide(area) ? Step::side : Step::feeling);
}

void DoctorChat::choose(Consult::Side side) {
  side_ = side;
  go(Step::feeling);
}

void DoctorChat::choose(Consult::Feeling feeling) {
  feeling_ = feeling;
  go(Step::when);
}

void DoctorChat::choose(Consult::When when) {
  if (!area_ || !feeling_) return;
  when_ = when;
  answer_ = Consult::answer(*area_, side_, *feeling_, when, report_);
  go(Step::result);
}

void DoctorChat::back() {
  const std::vector<Step> pages = steps();
  const auto at = std::find(pages.begin(), pages.end(), step_);
  if (at == pages.end() || at == pages.begin()) return;
  go(*(at - 1));
}

void DoctorChat::restart() {
  area_.reset();
  side_.reset();
  feeling_.reset();
  when_.reset();
  answer_.reset();
  messages_.clear();
  onChange.notify(Change::messages);
  go(Step::area);
}

void DoctorChat::say(Message::Role role, std::string text) {
  messages_.push_back({++lastId_, role, std::move(text)});
  onChange.notify(Change::messages);
}

void DoctorChat::ask() {
  std::string question = utf8::trim(draft_);
  if (question.empty() || thinking_) return;
  setDraft("");
  say(Message::Role::me, question);
  // Where no model exists at all, the question stays without a reply.
  if (!model_) return;
  thinking_ = true;
  onChange.notify(Change::thinking);
  model_->respond(instructions(), question, weakCall(self_, [](DoctorChat& chat, auto reply) {
                    chat.replied(std::move(reply));
                  }));
}

void DoctorChat::replied(std::optional<std::string> reply) {
  say(Message::Role::doctor, reply ? std::move(*reply) : std::string(failureLine));
  thinking_ = false;
  onChange.notify(Change::thinking);
}

std::string DoctorChat::instructions() const {
  return std::string(fixedInstructions) + report_.summaryForModel() +
         "\n방금 상담한 내용: " + joined(trail(), ", ");
}

std::string DoctorChat::prompt(Step step) const {
  switch (step) {
    case Step::area:
      return greeting();
    case Step::side:
      return "어느 쪽이 더 불편하세요?";
    case Step::feeling:
      return "어떤 느낌인가요?";
    case Step::when:
      return "언제 더 심한가요?";
    case Step::result:
      break;
  }
  return "";
}

std::string_view DoctorChat::subline(Step step) {
  switch (step) {
    case Step::area:
      return "가장 불편한 곳 하나를 골라 주세요";
    case Step::side:
      return "양쪽이 비슷하면 가운데를 골라 주세요";
    case Step::feeling:
      return "가장 가까운 느낌 하나를 골라 주세요";
    case Step::when:
      return "가장 자주 그런 때를 골라 주세요";
    case Step::result:
      break;
  }
  return "";
}

}  // namespace sodam
