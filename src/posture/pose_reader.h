#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "posture/detections.h"
#include "posture/measurement.h"
#include "posture/side_body.h"
#include "support/geometry.h"

namespace sodam {

// Which detector requests one frame needs, decided before they run. The
// platform runs them in this order and follows the two conditions:
//   1. body and hand pose, in one call, when bodyAndHands;
//   2. face rectangles;
//   3. person segmentation, when personWanted(what ran so far);
//   4. face landmarks on the widest face only (PoseReader::widestFace);
//   5. scene classification over sceneRegion(what ran so far), when it gives one.
struct FramePlan {
  bool bodyAndHands = false;
  bool faces = true;
  bool landmarks = true;
  bool person = false;  // the mask may be computed on this frame
  bool scene = false;   // the phone check is due on this frame

  // The mask is only worth its cost with a face found or the body asked for.
  bool personWanted(const Detections& sofar) const;
  // The classifier's region of interest; nothing when the frame can give no
  // measurement or no hand to look at.
  std::optional<Rect> sceneRegion(const Detections& sofar) const;
};

// Turns one frame's detections into a Measurement and, when the arms are
// asked for, a SideBody. Called on the capture's frame queue only, one frame
// at a time: it keeps a frame counter, the last shoulders and the last wrists
// from frame to frame. Once warm, reading a frame allocates nothing.
class PoseReader {
 public:
  struct Result {
    std::optional<Measurement> measurement;
    std::optional<SideBody> side;
  };

  // What the last mask showed beside the face: the shoulder points and the
  // torso width in image pixels, the top of the head (image y), and the face
  // box (normalised) they were found under.
  struct LastShoulders {
    Rect face;
    Point left;
    Point right;
    std::optional<double> top;
    std::optional<double> width;
    std::optional<double> widthY;
  };

  struct LastWrist {
    Point point;
    double confidence = 0;
  };

  // One mask row's person run under the face, kept between frames so the
  // torso scan needs no fresh storage.
  struct TorsoRun {
    int row = 0;
    int lo = 0;
    int hi = 0;
  };

  // The requests for the next frame, from the counter the next read will use.
  FramePlan plan(bool arms, bool light, bool phone) const;
  Result read(const Detections& detections, bool arms, bool light, bool phone);

  // max(0, electronics - the strongest computer label - half of pen).
  static float phoneScore(const std::vector<Detections::Classification>& observations);
  // The region of interest for the phone score, normalised; nothing without
  // hand or wrist points or when the region is too small.
  static std::optional<Rect> phoneRegion(const Detections& detections);
  // The face with the widest box; the earlier one on a tie.
  static std::optional<std::size_t> widestFace(const std::vector<Detections::Face>& faces);

  std::int64_t frameCount() const { return frameCount_; }
  const std::optional<LastShoulders>& lastShoulders() const { return lastShoulders_; }

 private:
  void placeShoulders(Measurement& m, const Detections::PersonMask* mask, Rect face);

  std::int64_t frameCount_ = 0;
  std::optional<LastShoulders> lastShoulders_;
  std::optional<LastWrist> lastWristL_;
  std::optional<LastWrist> lastWristR_;
  std::vector<TorsoRun> torsoRuns_;
};

}  // namespace sodam
