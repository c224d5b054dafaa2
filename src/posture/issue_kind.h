#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sodam {

// What can be wrong with a posture. The raw value is the case name, which
// the posture log stores.
class IssueKind {
 public:
  enum Value : int {
    forwardHead,
    leaning,
    slouch,
    lookingDown,
    shoulderTilt,
    headTilt,
    lean,
    tooClose,
  };
  static constexpr int count = 8;

  constexpr IssueKind(Value value) : value_(value) {}
  static std::optional<IssueKind> fromRaw(std::string_view raw);
  static const std::vector<IssueKind>& all();
  constexpr operator Value() const { return value_; }

  std::string_view raw() const;
  std::string_view title() const;
  std::string_view fix() const;
  std::string_view symbol() const;

 private:
  Value value_;
};

struct Issue {
  IssueKind kind;
  double score = 0;  // metric over threshold: 1.0 is just over the line
  std::string detail;
  bool operator==(const Issue&) const = default;
};

}  // namespace sodam
