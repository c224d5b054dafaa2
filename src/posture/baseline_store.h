#pragma once

#include <optional>

#include "platform/defaults.h"
#include "posture/baseline.h"

namespace sodam {

// The learned posture on the shared defaults, under "baseline". The posture
// engine keeps it there itself, as it keeps its log.
namespace BaselineStore {
// A baseline of another format version reads as none, so a change of format
// sends the user back to learning; its data stays until a new baseline
// replaces it. Absent or damaged data reads as none too.
std::optional<Baseline> read(const Defaults& defaults);
// No baseline, or one that cannot be encoded, clears the key.
void write(Defaults& defaults, const std::optional<Baseline>& baseline);
}  // namespace BaselineStore

}  // namespace sodam
