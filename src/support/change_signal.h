#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace sodam {

// "Something visible changed": views subscribe to redraw from the owner's
// state. Main thread only. An observer may unsubscribe while being notified.
class ChangeSignal {
 public:
  using Token = std::uint64_t;

  Token subscribe(std::function<void()> observer) {
    observers_.emplace_back(++lastToken_, std::move(observer));
    return lastToken_;
  }
  void unsubscribe(Token token) {
    std::erase_if(observers_, [token](const auto& entry) { return entry.first == token; });
  }
  void notify() const {
    const auto snapshot = observers_;
    for (const auto& [token, observer] : snapshot)
      observer();
  }

 private:
  std::vector<std::pair<Token, std::function<void()>>> observers_;
  Token lastToken_ = 0;
};

}  // namespace sodam
