#include "app/dorani_page.h"

namespace sodam {

DoraniPage::DoraniPage(Ports ports)
    : dorani_(ports.dorani),
      monitor_(ports.monitor),
      store_(ports.store),
      scheduler_(ports.scheduler),
      poke_(ports.clock, ports.scheduler, std::move(ports.pick)),
      self_(lifeToken(this)) {
  poke_.onChange.subscribe(weakCall(self_, [](DoraniPage& page) { page.onChange.notify(); }));
}

DoraniPage::~DoraniPage() {
  *self_ = nullptr;
}

void DoraniPage::appear() {
  visible_ = true;
  dorani_.markSeen();
  lines_ = dorani_.lines(monitor_);
  index_ = 0;
  turner_ =
      scheduler_.repeating(lineSeconds, weakCall(self_, [](DoraniPage& page) { page.turn(); }));
  onChange.notify();
}

void DoraniPage::disappear() {
  visible_ = false;
  turner_.invalidate();
}

// The lines are gathered afresh at each turn, so a new alert or a level
// reached shows within one turn; the place in the list goes on.
void DoraniPage::turn() {
  lines_ = dorani_.lines(monitor_);
  index_ = lines_.empty() ? 0 : (index_ + 1) % lines_.size();
  onChange.notify();
}

Dorani::Line DoraniPage::shown() const {
  if (const auto& reply = poke_.reply()) return *reply;
  if (lines_.empty()) return {};
  return lines_[index_ % lines_.size()];
}

void DoraniPage::poke() {
  poke_.poke();
}

}  // namespace sodam
