#include "companion/dorani_poke.h"

#include <random>
#include <span>

namespace sodam {

namespace {
using Mood = PillEyes::Mood;

struct Reply {
  Mood mood;
  std::span<const std::string_view> texts;
};

Reply replyFor(int combo) {
  if (combo <= 1) return {Mood::happy, Dorani::pokes};
  if (combo == 2) return {Mood::wink, Dorani::winks};
  if (combo <= 4) return {Mood::surprised, Dorani::surprised};
  if (combo <= 7) return {Mood::dizzy, Dorani::dizzy};
  return {Mood::pout, Dorani::pouts};
}
}  // namespace

DoraniPoke::DoraniPoke(const Clock& clock, Scheduler& scheduler, Pick pick)
    : clock_(clock), scheduler_(scheduler), pick_(std::move(pick)), self_(lifeToken(this)) {}

DoraniPoke::~DoraniPoke() {
  *self_ = nullptr;
}

Dorani::Line DoraniPoke::poke() {
  const Date now = clock_.now();
  const bool quick = poked_ && now - *poked_ < comboSeconds;
  combo_ = quick ? combo_ + 1 : 1;
  poked_ = now;
  const Reply reply = replyFor(combo_);
  const std::size_t index = pick_ ? pick_(reply.texts.size()) % reply.texts.size() : 0;
  reply_ = Dorani::Line{std::string(reply.texts[index]), reply.mood};
  clear_ = scheduler_.schedule({replySeconds, 0, 0}, weakCall(self_, [](DoraniPoke& poke) {
                                 poke.reply_.reset();
                                 poke.onChange.notify();
                               }));
  onChange.notify();
  return *reply_;
}

DoraniPoke::Pick DoraniPoke::randomPick() {
  auto engine = std::make_shared<std::mt19937>(std::random_device{}());
  return [engine](std::size_t count) {
    if (count == 0) return std::size_t{0};
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(*engine);
  };
}

}  // namespace sodam
