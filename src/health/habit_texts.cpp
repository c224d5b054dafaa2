#include <cmath>
#include <string>

#include "health/habit_texts.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

constexpr std::string_view rightWord = "오른쪽";
constexpr std::string_view leftWord = "왼쪽";
// From this mean on, a forward head is a turtle neck.
constexpr double turtleCm = 4;

// The numbers the templates fill in.
struct Numbers {
  std::string pct;  // the share in whole percent
  std::string a1;   // the mean's size with one decimal
  std::string r;    // the mean, whole
};

Numbers numbersOf(double avg, double share) {
  return {std::to_string(roundedInt(share * 100)), format("%.1f", std::abs(avg)),
          std::to_string(roundedInt(avg))};
}

// A sided habit's template with its side's word.
std::string sided(std::string_view text, std::string_view side, const Numbers& n) {
  return fill(text, {{"side", side}, {"pct", n.pct}, {"a1", n.a1}});
}

Habit tilt(double avg, const Numbers& n) {
  const std::string_view near = avg > 0 ? rightWord : leftWord;
  const std::string_view far = avg > 0 ? leftWord : rightWord;
  auto said = [&](std::string_view text) {
    return fill(text, {{"near", near}, {"far", far}, {"pct", n.pct}, {"a1", n.a1}});
  };
  Habit h;
  h.title = said("고개가 {near}으로 기우는 습관");
  h.measure = said("평균 {a1}도 · 확인의 {pct}%가 같은 쪽");
  h.tight = {said("{near} 목 옆(사각근·목빗근)"), said("{near} 어깨 위(위 등세모근)")};
  h.strained = {said("{far} 목 옆")};
  h.why = said(
      "고개가 {near}으로 기울면 {near} 목 옆 근육은 짧아진 채 굳고, 반대쪽은 늘어난 채 "
      "버텨요. 그래서 오히려 {far} 목이 뻐근하다고 느끼는 경우가 많아요.");
  h.release = said(
      "목 옆 늘리기에서 고개를 {far}으로 기울이는 쪽({near} 근육이 늘어나는 쪽)을 조금 더 길게 "
      "해 주세요.");
  h.stretches = {"neckSide", "levator"};
  h.focus = {Focus::neckSide(avg > 0 ? 1 : -1)};
  return h;
}

Habit forward(double avg, const Numbers& n) {
  Habit h;
  h.title = avg >= turtleCm ? "거북목 습관" : "머리가 앞으로 나오는 습관";
  h.measure = fill("평균 {a1}센티 · 확인의 {pct}%", {{"a1", n.a1}, {"pct", n.pct}});
  h.tight = {"뒤통수 아래(후두밑근)", "목 앞 옆(목빗근)", "가슴 앞(작은가슴근)"};
  h.strained = {"목 앞 깊은 근육", "날개뼈 사이(중간·아래 등세모근)"};
  h.why =
      "머리가 어깨보다 앞으로 나올수록 목 뒤 근육이 머리 무게를 더 오래 붙잡아야 해요. 뒤통수 "
      "아래가 뻐근하거나 조이는 두통이 오기 쉽고, 오래되면 가슴은 짧아지고 등은 약해져 어깨가 "
      "앞으로 말려요.";
  h.release = "턱 당기기로 목 앞 깊은 근육을 깨우고, 가슴 열기로 짧아진 가슴을 늘려 주세요.";
  h.stretches = {"chinTuck", "chest", "neckFlex"};
  h.focus = {{Focus::Part::neckBack}, {Focus::Part::chest}};
  return h;
}

Habit slouch(const Numbers& n) {
  Habit h;
  h.title = "등이 굽는 습관";
  h.measure = fill("머리가 평균 {a1}센티 내려와요 · 확인의 {pct}%", {{"a1", n.a1}, {"pct", n.pct}});
  h.tight = {"가슴 앞", "배 앞쪽"};
  h.strained = {"등 위쪽을 펴는 근육", "날개뼈 사이"};
  h.why =
      "등이 둥글게 말리면 등 위쪽과 날개뼈 사이 근육이 늘어난 채 버텨서 뻐근해지고, 오래 앉을수록 "
      "허리 아래 부담도 커져요.";
  h.release = "앉아서 고양이 자세로 척추를 한 마디씩 움직이고, 날개뼈 모으기로 등을 깨워 주세요.";
  h.stretches = {"catCow", "squeeze", "chest", "reach"};
  h.focus = {{Focus::Part::upperBack}, {Focus::Part::lowerBack}};
  return h;
}

Habit nod(const Numbers& n) {
  Habit h;
  h.title = "고개를 숙여 보는 습관";
  h.measure = fill("평균 {r}도 숙여요 · 확인의 {pct}%", {{"r", n.r}, {"pct", n.pct}});
  h.tight = {"목 앞"};
  h.strained = {"목 뒤"};
  h.why =
      "고개를 숙이면 목 뒤 근육이 머리 무게를 계속 붙잡아야 해요. 화면이 눈보다 많이 낮을 때 "
      "흔해요. 자리 맞추기에서 화면 높이와 각도를 확인해 보세요.";
  h.release = "하늘 보기로 반대 방향으로 풀고, 턱 당기기로 머리를 제자리로 돌려 주세요.";
  h.stretches = {"neckExt", "chinTuck"};
  h.focus = {{Focus::Part::neckBack}};
  return h;
}

Habit shoulder(double avg, const Numbers& n) {
  const std::string_view side = avg > 0 ? leftWord : rightWord;
  auto said = [&](std::string_view text) { return sided(text, side, n); };
  Habit h;
  h.title = said("{side} 어깨가 올라가는 습관");
  h.measure = said("평균 {a1}도 · 확인의 {pct}%가 같은 쪽");
  h.tight = {said("{side} 어깨 위(위 등세모근·어깨올림근)")};
  h.why =
      "한쪽 어깨가 올라가 있으면 그쪽 어깨 위 근육이 계속 수축해 뭉쳐요. 마우스를 쥐는 손이나 "
      "가방을 메는 쪽인 경우가 많아요.";
  h.release = said(
      "어깨 으쓱 풀기로 힘을 털고, 목 대각선 늘리기를 {side} 어깨가 늘어나는 쪽으로 해 주세요.");
  h.stretches = {"shrug", "levator", "neckSide"};
  h.focus = {Focus::neckSide(avg > 0 ? -1 : 1)};
  return h;
}

Habit lean(double avg, const Numbers& n) {
  const std::string_view side = avg > 0 ? leftWord : rightWord;
  auto said = [&](std::string_view text) { return sided(text, side, n); };
  Habit h;
  h.title = said("몸이 {side}으로 기우는 습관");
  h.measure = said("평균 {a1}센티 · 확인의 {pct}%가 같은 쪽");
  h.tight = {said("{side} 옆구리(허리네모근)")};
  h.strained = {"반대쪽 허리"};
  h.why =
      "한쪽으로 기대 앉으면 그쪽 옆구리가 짧아지고 허리 한쪽에 부담이 몰려요. 팔걸이에 한쪽 팔만 "
      "올리거나 다리를 꼬는 습관이 있는지 확인해 보세요.";
  h.release = said("옆구리 늘리기를 {side} 옆구리가 늘어나는 쪽으로 조금 더 해 주세요.");
  h.stretches = {"sideBend", "twist"};
  h.focus = {Focus::side(avg > 0 ? -1 : 1)};
  return h;
}

Habit close(const Numbers& n) {
  Habit h;
  h.title = "화면에 다가가는 습관";
  h.measure = fill("평균 {r}센티 가까워져요", {{"r", n.r}});
  h.tight = {"눈 초점 근육"};
  h.why = "화면이 가까우면 눈이 초점을 맞추느라 계속 긴장하고, 머리도 따라 앞으로 나오기 쉬워요.";
  h.release = "20분마다 20초 먼 곳 보기를 하고, 글자를 키워 화면에서 조금 떨어져 앉아 보세요.";
  h.stretches = {"eyes"};
  h.focus = {{Focus::Part::eyes}};
  return h;
}

}  // namespace

Habit describedHabit(std::string_view id, double avg, double share, Habit::Level level) {
  const Numbers n = numbersOf(avg, share);
  Habit h;
  if (id == "tilt") h = tilt(avg, n);
  if (id == "forward") h = forward(avg, n);
  if (id == "slouch") h = slouch(n);
  if (id == "nod") h = nod(n);
  if (id == "shoulder") h = shoulder(avg, n);
  if (id == "lean") h = lean(avg, n);
  if (id == "close") h = close(n);
  h.id = std::string(id);
  h.level = level;
  return h;
}

}  // namespace sodam
