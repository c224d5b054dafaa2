#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/defaults.h"

namespace sodam {

// The simulation's store: reads and writes in memory over the real store,
// which gets what changed at each flush. A simulated day passes in seconds,
// and the product writes its records at every tick and check: written
// through one by one, a week would spend its time waiting for the disk. Any
// thread may call it.
class BufferedDefaults final : public Defaults {
 public:
  explicit BufferedDefaults(Defaults& store) : store_(store) {}
  // Whatever is still held goes to the store.
  ~BufferedDefaults() override { flush(); }
  BufferedDefaults(const BufferedDefaults&) = delete;
  BufferedDefaults& operator=(const BufferedDefaults&) = delete;

  std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

  // Hands every change since the last flush to the store, the last value of
  // each key once.
  void flush();
  bool pending() const;

 private:
  Defaults& store_;
  mutable std::mutex mutex_;
  // A key's newest value; nothing for a key removed.
  std::map<std::string, std::optional<DefaultsValue>, std::less<>> changes_;
};

}  // namespace sodam
