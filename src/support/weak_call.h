#pragma once

#include <memory>
#include <utility>

namespace sodam {

// A long-lived object hands out this token, a shared pointer to itself that
// it nulls in its destructor; callbacks given to timers, queues and other
// components hold it weakly. It is read on the owner's thread only.
template <typename Owner>
using LifeToken = std::shared_ptr<Owner*>;

template <typename Owner>
LifeToken<Owner> lifeToken(Owner* owner) {
  return std::make_shared<Owner*>(owner);
}

// Wraps a call on the owner so that it does nothing once the owner is gone:
// the block of a late timer or a frame already on its way.
template <typename Owner, typename F>
auto weakCall(const LifeToken<Owner>& token, F call) {
  return [weak = std::weak_ptr<Owner*>(token), call](auto&&... args) {
    if (auto alive = weak.lock(); alive && *alive) call(**alive, args...);
  };
}

// The same for a question: the owner's answer, or `gone` once it is gone.
template <typename Owner, typename Answer, typename F>
auto weakAsk(const LifeToken<Owner>& token, Answer gone, F ask) {
  return [weak = std::weak_ptr<Owner*>(token), gone, ask](auto&&... args) -> Answer {
    if (auto alive = weak.lock(); alive && *alive) return ask(**alive, args...);
    return gone;
  };
}

}  // namespace sodam
