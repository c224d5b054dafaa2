#pragma once

#include <memory>

namespace sodam {

// A long-lived object hands out this token, a shared pointer to itself that
// it nulls in its destructor; callbacks given to timers, queues and other
// components hold it weakly.
template <typename Owner>
using LifeToken = std::shared_ptr<Owner*>;

// Wraps a call on the owner so that it does nothing once the owner is gone:
// the block of a late timer or a frame already on its way.
template <typename Owner, typename F>
auto weakCall(const LifeToken<Owner>& token, F call) {
  return [weak = std::weak_ptr<Owner*>(token), call](auto&&... args) {
    if (auto alive = weak.lock(); alive && *alive) call(**alive, args...);
  };
}

}  // namespace sodam
