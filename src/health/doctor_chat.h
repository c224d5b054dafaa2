#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "health/consult.h"
#include "health/habit.h"
#include "health/language_model.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// The consult as the page walks it: the questions of the rule tree one step
// at a time, the rule answer, and afterwards free questions that the
// language model answers in the light of the posture record and the consult
// just made. Main thread only; it lives as long as the panel's model.
class DoctorChat {
 public:
  enum class Step { area, side, feeling, when, result };

  struct Message {
    enum class Role { doctor, me };
    std::uint64_t id = 0;  // unique within the chat, for the views' lists
    Role role = Role::me;
    std::string text;
    bool operator==(const Message&) const = default;
  };

  // What changed, so that the views animate it the designed way.
  enum class Change { step, messages, thinking, draft };

  // The views' spring for a change of step and for a new message.
  struct Spring {
    double response;
    double dampingFraction;
    double blendDuration;
  };
  static constexpr Spring stepSpring{0.32, 0.86, 0};
  static constexpr Spring messageSpring{0.26, 0.85, 0};

  static constexpr std::string_view failureLine =
      "지금은 답을 만들지 못했어요. 잠시 뒤 다시 물어봐 주세요.";
  static constexpr std::string_view thinkingLine = "생각하는 중…";

  // Without a model the chat has no voice: questions stay unanswered.
  DoctorChat(HabitReport report, LanguageModel* model);
  ~DoctorChat();
  DoctorChat(const DoctorChat&) = delete;
  DoctorChat& operator=(const DoctorChat&) = delete;

  Signal<Change> onChange;

  // Replaces the report and changes nothing else.
  void update(HabitReport report) { report_ = std::move(report); }
  const HabitReport& report() const { return report_; }

  Step step() const { return step_; }
  std::optional<Consult::Area> area() const { return area_; }
  std::optional<Consult::Side> side() const { return side_; }
  std::optional<Consult::Feeling> feeling() const { return feeling_; }
  std::optional<Consult::When> when() const { return when_; }
  const std::optional<Consult::Answer>& answer() const { return answer_; }
  const std::vector<Message>& messages() const { return messages_; }
  bool thinking() const { return thinking_; }
  const std::string& draft() const { return draft_; }
  void setDraft(std::string text);

  // The question pages that apply: the side only where the area asks, or
  // while no area is chosen.
  std::vector<Step> steps() const;
  // The choices made so far, by their raw values, in the questions' order.
  std::vector<std::string> trail() const;
  std::string greeting() const;
  // The chat is offered: the model is there and ready.
  bool canTalk() const;

  void choose(Consult::Area area);
  void choose(Consult::Side side);
  void choose(Consult::Feeling feeling);
  // Answers once the area and the feeling are known.
  void choose(Consult::When when);
  // The question before; nothing on the first question or the result.
  void back();
  void restart();
  // Sends the draft: nothing for blanks or while a reply is on its way.
  void ask();

  // The model's instructions: the fixed text, the record, the consult.
  std::string instructions() const;
  // A question page's prompt and the line under it.
  std::string prompt(Step step) const;
  static std::string_view subline(Step step);

 private:
  void go(Step step);
  void say(Message::Role role, std::string text);
  void replied(std::optional<std::string> reply);

  LifeToken<DoctorChat> self_ = lifeToken(this);
  HabitReport report_;
  LanguageModel* model_;
  Step step_ = Step::area;
  std::optional<Consult::Area> area_;
  std::optional<Consult::Side> side_;
  std::optional<Consult::Feeling> feeling_;
  std::optional<Consult::When> when_;
  std::optional<Consult::Answer> answer_;
  std::vector<Message> messages_;
  bool thinking_ = false;
  std::string draft_;
  std::uint64_t lastId_ = 0;
};

}  // namespace sodam
