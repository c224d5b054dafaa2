#pragma once

#include <cstddef>
#include <functional>
#include <optional>

#include "companion/dorani.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// Taps on the character on the companion's page. Quick taps build a combo,
// and the reply turns from a giggle to a wink, a start, dizziness and at
// last a pout; the reply stands for a while after the last tap and then the
// page goes back to its line. Main thread only.
class DoraniPoke {
 public:
  // Picks an index below the count: the random source, injected so tests
  // and the simulation get the same replies every time.
  using Pick = std::function<std::size_t(std::size_t count)>;

  // A tap within this many seconds of the last one adds to the combo.
  static constexpr double comboSeconds = 0.9;
  // The reply clears this long after the last tap.
  static constexpr double replySeconds = 2.6;
  // The character's bounce on each tap: response and damping of a spring.
  static constexpr double bounceResponse = 0.19;
  static constexpr double bounceDamping = 0.8;

  DoraniPoke(const Clock& clock, Scheduler& scheduler, Pick pick);
  ~DoraniPoke();
  DoraniPoke(const DoraniPoke&) = delete;
  DoraniPoke& operator=(const DoraniPoke&) = delete;

  // A tap: the reply, which also stands in `reply` until it clears.
  Dorani::Line poke();

  int combo() const { return combo_; }
  const std::optional<Dorani::Line>& reply() const { return reply_; }
  // After a tap and when the reply clears.
  ChangeSignal onChange;

  // A source of the standard library's engine, seeded once.
  static Pick randomPick();

 private:
  const Clock& clock_;
  Scheduler& scheduler_;
  Pick pick_;
  LifeToken<DoraniPoke> self_;
  int combo_ = 0;
  std::optional<Date> poked_;
  std::optional<Dorani::Line> reply_;
  Timer clear_;
};

}  // namespace sodam
