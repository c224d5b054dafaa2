#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace sodam {

// A component's announcement, which any number of observers follow: the
// application's wiring and the views alike. Main thread only. An observer may
// unsubscribe, or subscribe another, while being notified; the change takes
// effect at the next notification.
template <typename... Args>
class Signal {
 public:
  using Token = std::uint64_t;
  using Observer = std::function<void(Args...)>;

  Token subscribe(Observer observer) {
    observers_.emplace_back(++lastToken_, std::move(observer));
    return lastToken_;
  }
  void unsubscribe(Token token) {
    std::erase_if(observers_, [token](const auto& entry) { return entry.first == token; });
  }
  void notify(const Args&... args) const {
    const auto snapshot = observers_;
    for (const auto& entry : snapshot)
      entry.second(args...);
  }
  bool empty() const { return observers_.empty(); }

 private:
  std::vector<std::pair<Token, Observer>> observers_;
  Token lastToken_ = 0;
};

// "Something visible changed": observers read the owner's state again.
using ChangeSignal = Signal<>;

}  // namespace sodam
