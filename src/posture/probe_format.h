#pragma once

#include <optional>
#include <string>

#include "posture/measurement.h"
#include "posture/side_body.h"

namespace sodam {

// The lines of the "--probe" diagnostic run, one per frame and one per side
// view, which the shell writes to the system log. Numbers the frame did not
// give print as "-"; Bools print as true or false; yaw prints in degrees.

// "probe frame 7 size=1280x720 ipd=142 top=611 ...", or "probe frame 7 no face".
// `top` is the head's top in image pixels from the last mask, if any.
std::string probeFrameLine(int frame, const std::optional<Measurement>& measurement,
                           std::optional<double> top);
// "probe side head=... torso=... clipped=... ...", or "probe side none". The
// torso prints in head widths, as the sideways verdict weighs it.
std::string probeSideLine(const std::optional<SideBody>& side);
std::string probeNoPermissionLine();

// What the run saw, for its closing line.
struct ProbeTally {
  int frames = 0;
  int faces = 0;
  int ratios = 0;
  void add(const std::optional<Measurement>& measurement);
};
// "probe done frames={n} faces={faces} ratios={ratios}".
std::string probeDoneLine(const ProbeTally& tally);

}  // namespace sodam
