#include "posture/detections.h"

namespace sodam {

void Detections::FaceLandmarks::clear() {
  leftEye.clear();
  rightEye.clear();
  leftPupil.clear();
  rightPupil.clear();
  nose.clear();
  faceContour.clear();
}

std::optional<Detections::PersonMask::Run> Detections::PersonMask::runThrough(int column,
                                                                              int row) const {
  if (!contains(column, row) || !isPerson(column, row)) return std::nullopt;
  Run run{column, column};
  while (run.lo > 0 && isPerson(run.lo - 1, row))
    --run.lo;
  while (run.hi + 1 < width && isPerson(run.hi + 1, row))
    ++run.hi;
  return run;
}

std::optional<int> Detections::PersonMask::nearestPerson(int column, int row, int reach) const {
  if (row < 0 || row >= height) return std::nullopt;
  for (int step = 0; step <= reach; ++step) {
    for (int candidate : {column - step, column + step}) {
      if (candidate >= 0 && candidate < width && isPerson(candidate, row)) return candidate;
    }
  }
  return std::nullopt;
}

void Detections::PersonMask::clear() {
  width = 0;
  height = 0;
  bytes.clear();
}

void Detections::clear() {
  size = {};
  requests = {};
  faces.clear();
  landmarks.clear();
  mask.clear();
  bodies.clear();
  hands.clear();
  scene.clear();
}

}  // namespace sodam
