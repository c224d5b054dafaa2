#include "health/doctor_chat.h"

#include <gtest/gtest.h>

#include <memory>

namespace sodam {
namespace {

using Step = DoctorChat::Step;
using Role = DoctorChat::Message::Role;
using A = Consult::Area;

// A model that keeps each question and its reply for the test to give.
struct FakeModel : LanguageModel {
  struct Call {
    std::string instructions;
    std::string question;
    Reply reply;
  };
  bool ready = true;
  std::vector<Call> calls;

  bool available() const override { return ready; }
  void respond(const std::string& instructions, const std::string& question, Reply reply) override {
    calls.push_back({instructions, question, std::move(reply)});
  }
};

HabitReport turtle() {
  HabitReport report;
  report.samples = 30;
  Habit h;
  h.id = "forward";
  h.title = "거북목 습관";
  h.measure = "평균 4.5센티 · 확인의 90%";
  h.level = Habit::Level::clear;
  report.habits.push_back(h);
  return report;
}

struct DoctorChatTest : ::testing::Test {
  FakeModel model;
  DoctorChat chat{turtle(), &model};
  std::vector<DoctorChat::Change> changes;

  void SetUp() override {
    chat.onChange.subscribe([this](DoctorChat::Change c) { changes.push_back(c); });
  }
  void ask(std::string text) {
    chat.setDraft(std::move(text));
    chat.ask();
  }
};

TEST_F(DoctorChatTest, TheGreetingNamesTheStrongestHabit) {
  EXPECT_EQ(chat.greeting(), "기록을 보니 거북목 습관이 있어요.\n오늘은 어디가 불편하세요?");
  EXPECT_EQ(chat.prompt(Step::area), chat.greeting());
  chat.update(HabitReport());
  EXPECT_EQ(chat.greeting(), "어디가 불편하세요?");
}

TEST_F(DoctorChatTest, AnAreaWithoutSidesSkipsTheSideAndAnswersAtTheEnd) {
  EXPECT_EQ(chat.steps(), (std::vector<Step>{Step::area, Step::side, Step::feeling, Step::when}));
  chat.choose(Consult::When::sitting);  // nothing to answer yet
  EXPECT_EQ(chat.step(), Step::area);
  EXPECT_FALSE(chat.answer());

  chat.choose(A::neckBack);
  EXPECT_EQ(chat.step(), Step::feeling);
  EXPECT_EQ(chat.steps(), (std::vector<Step>{Step::area, Step::feeling, Step::when}));
  chat.choose(Consult::Feeling::stiff);
  chat.choose(Consult::When::sitting);
  EXPECT_EQ(chat.step(), Step::result);
  ASSERT_TRUE(chat.answer());
  // The report's forward head shows in the answer.
  EXPECT_EQ(chat.answer()->causes[1],
            "기록을 보면 머리가 앞으로 나오는 습관이 있어요. 가장 먼저 의심되는 원인이에요.");
  EXPECT_EQ(chat.trail(),
            (std::vector<std::string>{"목 뒤·뒤통수", "뻐근하고 뭉쳐요", "오래 앉아 있을 때"}));
}

TEST_F(DoctorChatTest, BackGoesToThePreviousQuestionAndNeverLeavesTheResult) {
  chat.back();  // the first question: nothing before it
  EXPECT_EQ(chat.step(), Step::area);
  chat.choose(A::neckSide);
  chat.choose(Consult::Side::left);
  EXPECT_EQ(chat.step(), Step::feeling);
  chat.back();
  EXPECT_EQ(chat.step(), Step::side);
  EXPECT_EQ(chat.side(), Consult::Side::left);  // kept until overwritten
  chat.back();
  EXPECT_EQ(chat.step(), Step::area);

  // A new area drops the side: neckBack after neckSide passes none.
  chat.choose(A::neckBack);
  EXPECT_EQ(chat.side(), std::nullopt);
  chat.back();
  EXPECT_EQ(chat.step(), Step::area);
  chat.choose(A::neckBack);
  chat.choose(Consult::Feeling::ache);
  chat.back();
  EXPECT_EQ(chat.step(), Step::feeling);
  chat.choose(Consult::Feeling::ache);
  chat.choose(Consult::When::morning);
  chat.back();
  EXPECT_EQ(chat.step(), Step::result);
  EXPECT_EQ(chat.trail().size(), 3u);

  chat.setDraft("베개는요?");
  chat.ask();
  chat.restart();
  EXPECT_EQ(chat.step(), Step::area);
  EXPECT_TRUE(chat.trail().empty());
  EXPECT_FALSE(chat.answer());
  EXPECT_TRUE(chat.messages().empty());
}

TEST_F(DoctorChatTest, AQuestionGoesAloneToAFreshSessionWithTheRecordAndTheConsult) {
  chat.choose(A::lowBack);
  chat.choose(Consult::Side::right);
  chat.choose(Consult::Feeling::tingle);
  chat.choose(Consult::When::always);
  ask("  의자를 바꿔야 할까요?\n");
  EXPECT_TRUE(chat.draft().empty());
  EXPECT_TRUE(chat.thinking());
  ASSERT_EQ(chat.messages().size(), 1u);
  EXPECT_EQ(chat.messages()[0].role, Role::me);
  EXPECT_EQ(chat.messages()[0].text, "의자를 바꿔야 할까요?");
  ASSERT_EQ(model.calls.size(), 1u);
  EXPECT_EQ(model.calls[0].question, "의자를 바꿔야 할까요?");
  EXPECT_EQ(
      model.calls[0].instructions,
      "너는 소담자리 앱의 자세 상담 도우미다. 사용자의 자세 기록을 바탕으로 한국어 해요체로 "
      "짧고 따뜻하게 답한다.\n진단하지 말고 자세와 근육의 일반적인 관계, 스트레칭, 생활 습관만 "
      "안내한다. 저림, 힘 빠짐, 밤에 심해지는 통증,\n갑작스러운 극심한 두통 같은 신호가 나오면 "
      "진료를 권한다. 답은 네 문장 안팎으로 한다. 마크다운 기호는 쓰지 않는다.\n사용자 기록: "
      "최근 7일 확인 30회에서 찾은 습관: 거북목 습관(평균 4.5센티 · 확인의 90%, 뚜렷함)\n방금 "
      "상담한 내용: 허리, 오른쪽, 찌릿하거나 저려요, 가만히 있어도 계속");

  model.calls[0].reply("허리를 세우고 50분마다 일어나 보세요.");
  EXPECT_FALSE(chat.thinking());
  ASSERT_EQ(chat.messages().size(), 2u);
  EXPECT_EQ(chat.messages()[1].role, Role::doctor);
  EXPECT_NE(chat.messages()[1].id, chat.messages()[0].id);

  // The next question brings nothing of the first along.
  ask("얼마나 자주요?");
  ASSERT_EQ(model.calls.size(), 2u);
  EXPECT_EQ(model.calls[1].question, "얼마나 자주요?");
  EXPECT_EQ(model.calls[1].instructions, model.calls[0].instructions);
}

TEST_F(DoctorChatTest, BlanksAndQuestionsWhileThinkingAreIgnored) {
  ask(" \n\t　");
  EXPECT_TRUE(chat.messages().empty());
  EXPECT_TRUE(model.calls.empty());
  EXPECT_EQ(chat.draft(), " \n\t　");  // cleared nothing

  ask("첫 질문");
  ask("둘째 질문");
  EXPECT_EQ(chat.draft(), "둘째 질문");  // left for later
  EXPECT_EQ(chat.messages().size(), 1u);
  EXPECT_EQ(model.calls.size(), 1u);
}

TEST_F(DoctorChatTest, AFailedModelSaysSoInOneLineAndTheChatGoesOn) {
  ask("왜 아플까요?");
  model.calls[0].reply(std::nullopt);
  EXPECT_EQ(chat.messages().back().text,
            "지금은 답을 만들지 못했어요. 잠시 뒤 다시 물어봐 주세요.");
  EXPECT_FALSE(chat.thinking());
  ask("다시요");
  EXPECT_EQ(model.calls.size(), 2u);
  EXPECT_EQ(changes.back(), DoctorChat::Change::thinking);
}

TEST_F(DoctorChatTest, AReplyAfterItsChatIsGoneFindsNobody) {
  auto gone = std::make_unique<DoctorChat>(HabitReport(), &model);
  gone->setDraft("들리나요?");
  gone->ask();
  ask("여기요");
  gone.reset();
  model.calls[0].reply("네");
  model.calls[1].reply("여기 있어요");
  ASSERT_EQ(chat.messages().size(), 2u);
  EXPECT_EQ(chat.messages()[1].text, "여기 있어요");
}

TEST(DoctorChat, WithoutAModelTheChatIsNotOfferedAndQuestionsStayUnanswered) {
  DoctorChat chat(HabitReport(), nullptr);
  EXPECT_FALSE(chat.canTalk());
  chat.setDraft("안녕하세요");
  chat.ask();
  EXPECT_EQ(chat.messages().size(), 1u);
  EXPECT_FALSE(chat.thinking());
  FakeModel asleep;
  asleep.ready = false;
  EXPECT_FALSE(DoctorChat(HabitReport(), &asleep).canTalk());
  asleep.ready = true;
  EXPECT_TRUE(DoctorChat(HabitReport(), &asleep).canTalk());
  // The short summary stands in the instructions of a report with no habit.
  EXPECT_NE(chat.instructions().find("사용자 기록: 최근 7일 확인 0회, 뚜렷한 자세 습관은 아직 "
                                     "없음.\n방금 상담한 내용: "),
            std::string::npos);
}

}  // namespace
}  // namespace sodam
