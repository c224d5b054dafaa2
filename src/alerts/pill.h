#pragma once

#include <optional>
#include <string>
#include <variant>

#include "alerts/theme.h"
#include "companion/pill_eyes.h"
#include "posture/issue_kind.h"
#include "support/date.h"

namespace sodam {

// One message on the pill under the menu bar. A plain value compared field by
// field: two pills with the same words made a moment apart differ through
// `started`, so a delayed step that checks "is my pill still up" is not
// fooled by a newer pill that happens to say the same.
struct Pill {
  // What the left of the pill shows.
  class Art {
   public:
    enum class Kind { symbol, fix, buddy, say, countdown, breathe };

    // A system symbol name in a round badge.
    static Art symbol(std::string name) { return Art(Symbol{std::move(name)}); }
    // The fix icon of an issue kind.
    static Art fix(IssueKind kind) { return Art(Fix{kind}); }
    // The companion's face alone, without text.
    static Art buddy(PillEyes::Mood mood) { return Art(Buddy{mood}); }
    // The companion, with title and detail in a speech bubble beside it.
    static Art say(PillEyes::Mood mood) { return Art(Say{mood}); }
    // A countdown ring of that many seconds from the pill's start.
    static Art countdown(int seconds) { return Art(Countdown{seconds}); }
    // A breathing guide of that many seconds from the pill's start.
    static Art breathe(int seconds) { return Art(Breathe{seconds}); }

    Kind kind() const { return static_cast<Kind>(value_.index()); }
    // Empty unless the art is a symbol.
    std::string_view symbolName() const;
    std::optional<IssueKind> issue() const;
    std::optional<PillEyes::Mood> mood() const;
    // The seconds of a countdown or breathing art, else 0.
    int seconds() const;

    bool isBuddy() const { return kind() == Kind::buddy || kind() == Kind::say; }
    bool isSay() const { return kind() == Kind::say; }

    // "fix(forwardHead)", "buddy(happy)", "countdown(13)": for text shells.
    std::string describe() const;

    bool operator==(const Art&) const = default;

   private:
    struct Symbol {
      std::string name;
      bool operator==(const Symbol&) const = default;
    };
    struct Fix {
      IssueKind kind;
      bool operator==(const Fix& other) const { return kind == other.kind; }
    };
    struct Buddy {
      PillEyes::Mood mood;
      bool operator==(const Buddy&) const = default;
    };
    struct Say {
      PillEyes::Mood mood;
      bool operator==(const Say&) const = default;
    };
    struct Countdown {
      int seconds;
      bool operator==(const Countdown&) const = default;
    };
    struct Breathe {
      int seconds;
      bool operator==(const Breathe&) const = default;
    };
    // The alternatives keep the order of Kind.
    using Value = std::variant<Symbol, Fix, Buddy, Say, Countdown, Breathe>;

    // Each alternative goes straight into the variant: moving a whole variant
    // whose string alternative is not the live one trips GCC 12's
    // -Wmaybe-uninitialized at -O2 with sanitizers (GCC bug 80635).
    template <class Alternative>
    explicit Art(Alternative alternative) : value_(std::move(alternative)) {}

    Value value_;
  };

  // `started` is the moment the value is made, from the caller's clock.
  Pill(Date started, Art art, Theme tint, std::optional<std::string> title = std::nullopt,
       std::optional<std::string> detail = std::nullopt);
  // A pill whose art is the named system symbol.
  Pill(Date started, std::string symbol, Theme tint,
       std::optional<std::string> title = std::nullopt,
       std::optional<std::string> detail = std::nullopt);

  bool isBuddy() const { return art.isBuddy(); }
  bool isSay() const { return art.isSay(); }

  Art art;
  Theme tint;
  std::optional<std::string> title;
  std::optional<std::string> detail;
  Date started;

  bool operator==(const Pill&) const = default;
};

}  // namespace sodam
