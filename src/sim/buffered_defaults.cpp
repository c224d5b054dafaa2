#include "sim/buffered_defaults.h"

#include <utility>

namespace sodam {

std::optional<DefaultsValue> BufferedDefaults::object(std::string_view key) const {
  {
    std::lock_guard lock(mutex_);
    if (auto found = changes_.find(key); found != changes_.end()) return found->second;
  }
  return store_.object(key);
}

void BufferedDefaults::set(std::string_view key, DefaultsValue value) {
  std::lock_guard lock(mutex_);
  changes_.insert_or_assign(std::string(key), std::move(value));
}

void BufferedDefaults::remove(std::string_view key) {
  std::lock_guard lock(mutex_);
  changes_.insert_or_assign(std::string(key), std::nullopt);
}

// Under the lock throughout, so that a read meanwhile finds each key either
// still held here or already in the store.
void BufferedDefaults::flush() {
  std::lock_guard lock(mutex_);
  for (auto& [key, value] : changes_) {
    if (value) {
      store_.set(key, std::move(*value));
    } else {
      store_.remove(key);
    }
  }
  changes_.clear();
}

bool BufferedDefaults::pending() const {
  std::lock_guard lock(mutex_);
  return !changes_.empty();
}

}  // namespace sodam
