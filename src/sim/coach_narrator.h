#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "coach/coach_session.h"

namespace sodam {

// Tells a coach session as it goes, one line at a time, as a person at the
// desk would notice it: the framing hint, each stretch and side, the figure's
// lines, every counted repetition and the end. Follows the session's changes;
// either may be let go first. Main thread only.
class CoachNarrator {
 public:
  using Sink = std::function<void(const std::string& line)>;

  CoachNarrator(CoachSession& session, Sink sink);
  ~CoachNarrator();
  CoachNarrator(const CoachNarrator&) = delete;
  CoachNarrator& operator=(const CoachNarrator&) = delete;

  // The finished routine, a line per stretch and side, and the total.
  static std::vector<std::string> summary(const CoachSession& session);

 private:
  void changed();
  void tellPhase();
  std::string stretchName() const;

  CoachSession& session_;
  Sink sink_;
  // The session may go first; its observer then finds this flag down.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  std::optional<CoachSession::Phase::Kind> phase_;
  int index_ = -1;
  Side side_ = Side::right;
  std::optional<std::string> cue_;
  std::optional<std::string> hint_;
  int reps_ = 0;
};

}  // namespace sodam
