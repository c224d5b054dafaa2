#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/defaults.h"

namespace sodam {

// The study-room figure at a desk in the group pages: each field picks one
// drawing of its part. The user's own is kept under "mateLook"; the others
// come with each member's shared document.
struct MateLook {
  int skin = 0;
  int hair = 0;
  int hairColor = 0;
  int shirt = 0;
  int item = 0;
  int eyes = 0;
  int top = 0;
  int face = 0;

  using Dictionary = std::map<std::string, int, std::less<>>;

  // The user's own look; the default when absent or unreadable.
  static MateLook mine(const Defaults& defaults);
  static void setMine(Defaults& defaults, const MateLook& look);
  // One of three fixed looks, by n modulo 3, for members without one.
  static MateLook sample(int n);

  // The eight fields by name, for the shared document.
  Dictionary dictionary() const;
  // A field missing from the map keeps the default's value; no map gives
  // the default look.
  static MateLook from(const std::optional<Dictionary>& dictionary);

  bool operator==(const MateLook&) const = default;
};

}  // namespace sodam
