#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace sodam {

// What the look editor shows of one option of a look: its Korean name and
// the friendship level from which it may be chosen.
struct LookOption {
  std::string_view title;
  int level = 1;
};

// Each option enumeration of the looks specialises this with its rows in
// raw order: `static constexpr std::array<LookOption, N> rows`.
template <class Option>
struct LookTable;

template <class Option>
constexpr int lookCount() {
  return static_cast<int>(LookTable<Option>::rows.size());
}

// A stored raw value that is no case reads as the first case, the default.
template <class Option>
constexpr Option lookFrom(int raw) {
  return raw >= 0 && raw < lookCount<Option>() ? static_cast<Option>(raw) : Option{};
}

template <class Option>
constexpr int lookRaw(Option option) {
  return static_cast<int>(option);
}

template <class Option>
constexpr std::string_view lookTitle(Option option) {
  return LookTable<Option>::rows[static_cast<std::size_t>(option)].title;
}

template <class Option>
constexpr int lookLevel(Option option) {
  return LookTable<Option>::rows[static_cast<std::size_t>(option)].level;
}

// An option opens once the friendship level reaches its own.
template <class Option>
constexpr bool lookOpen(Option option, int friendshipLevel) {
  return lookLevel(option) <= friendshipLevel;
}

// Every case in raw order, for an editor's list.
template <class Option>
std::vector<Option> lookOptions() {
  std::vector<Option> all;
  for (int raw = 0; raw < lookCount<Option>(); ++raw)
    all.push_back(static_cast<Option>(raw));
  return all;
}

}  // namespace sodam
