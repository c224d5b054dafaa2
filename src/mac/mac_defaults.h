#pragma once

// Any thread may call it: the standard user defaults guard their own state.

#include "platform/defaults.h"

namespace sodam {

// The settings on the standard user defaults, the one defaults domain of the
// application. A stored value of a kind the port has no case for (a number
// array, a dictionary of strings) reads as nothing.
class MacDefaults final : public Defaults {
 public:
  std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;
};

}  // namespace sodam
