#pragma once

#include <string_view>
#include <vector>

#include "companion/dorani.h"
#include "companion/dorani_poke.h"
#include "companion/pill_look.h"
#include "platform/store.h"
#include "posture/monitor.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// The companion's page as its view reads it: the line 도란이 says now, its
// reply to taps, and the look editor with the options the level opens. The
// view calls `appear` when the page comes to the front and `disappear` when
// it leaves. Main thread only.
class DoraniPage {
 public:
  // Each line stands this long before the next one comes.
  static constexpr double lineSeconds = 6;

  struct Ports {
    Dorani& dorani;
    const Monitor& monitor;
    Store& store;
    const Clock& clock;
    Scheduler& scheduler;
    DoraniPoke::Pick pick;
  };

  // One option of a look as the editor lists it.
  struct Choice {
    int raw = 0;
    std::string_view title;
    int level = 1;
    bool open = false;    // the friendship level reached the option's
    bool chosen = false;  // part of the look now
  };

  explicit DoraniPage(Ports ports);
  ~DoraniPage();
  DoraniPage(const DoraniPage&) = delete;
  DoraniPage& operator=(const DoraniPage&) = delete;

  // The lines start again from the first, the most pressing, and turn every
  // few seconds; the level counts as seen.
  void appear();
  void disappear();
  bool visible() const { return visible_; }

  // A reply to a tap while it stands, else the line whose turn it is.
  Dorani::Line shown() const;
  const std::vector<Dorani::Line>& lines() const { return lines_; }
  // A tap on the character.
  void poke();
  int combo() const { return poke_.combo(); }

  PillLook look() const { return PillLook::current(store_); }
  template <class Option>
  std::vector<Choice> choices() const;
  // Puts the option on; false for an option the level has not opened.
  template <class Option>
  bool choose(Option option);

  // The line, the reply or the look changed.
  ChangeSignal onChange;

 private:
  void turn();

  Dorani& dorani_;
  const Monitor& monitor_;
  Store& store_;
  Scheduler& scheduler_;
  DoraniPoke poke_;
  LifeToken<DoraniPage> self_;
  bool visible_ = false;
  std::vector<Dorani::Line> lines_;
  std::size_t index_ = 0;
  Timer turner_;
};

template <class Option>
std::vector<DoraniPage::Choice> DoraniPage::choices() const {
  const int level = dorani_.level();
  PillLook current = look();
  std::vector<Choice> out;
  for (Option option : lookOptions<Option>()) {
    PillLook tried = current;
    tried.set(option);
    out.push_back({lookRaw(option), lookTitle(option), lookLevel(option), lookOpen(option, level),
                   tried == current});
  }
  return out;
}

template <class Option>
bool DoraniPage::choose(Option option) {
  if (!chooseLook(store_, option, dorani_.level())) return false;
  onChange.notify();
  return true;
}

}  // namespace sodam
