#include <algorithm>

#include "posture/pose_reader_steps.h"
#include "support/numeric.h"

namespace sodam::pose_steps {

namespace {

// Running means of the per-eye samples, kept without a list.
struct EyeSamples {
  double apertureSum = 0;
  int apertures = 0;
  Point pupilSum;
  int pupils = 0;

  // Eye regions of fewer than 6 points are too coarse to box; a box narrower
  // than 4 pixels or flatter than 1 pixel gives ratios of noise.
  void add(const std::vector<Point>& eye, const std::vector<Point>& pupilRegion) {
    if (eye.size() < 6) return;
    auto [minX, maxX] =
        std::minmax_element(eye.begin(), eye.end(), [](Point a, Point b) { return a.x < b.x; });
    auto [minY, maxY] =
        std::minmax_element(eye.begin(), eye.end(), [](Point a, Point b) { return a.y < b.y; });
    const double w = maxX->x - minX->x;
    const double h = maxY->y - minY->y;
    if (w <= 4) return;
    apertureSum += h / w;
    ++apertures;
    const auto pupil = centroid(pupilRegion);
    if (!pupil || h <= 1) return;
    pupilSum.x += (pupil->x - minX->x) / w;
    pupilSum.y += (pupil->y - minY->y) / h;
    ++pupils;
  }
};

std::optional<Point> lowestPoint(const std::vector<Point>& points) {
  if (points.empty()) return std::nullopt;
  return *std::min_element(points.begin(), points.end(),
                           [](Point a, Point b) { return a.y < b.y; });
}

}  // namespace

std::optional<Point> centroid(const std::vector<Point>& points) {
  if (points.empty()) return std::nullopt;
  Point sum;
  for (Point p : points) {
    sum.x += p.x;
    sum.y += p.y;
  }
  const double n = static_cast<double>(points.size());
  return Point{sum.x / n, sum.y / n};
}

bool eyesReadable(const Detections& d) {
  return d.succeeded(Detections::Request::landmarks) && !d.landmarks.leftEye.empty() &&
         !d.landmarks.rightEye.empty();
}

std::optional<Measurement> readFace(const Detections& d, const Detections::Face& face) {
  if (!eyesReadable(d)) return std::nullopt;
  const auto& marks = d.landmarks;
  const Point left = *centroid(marks.leftEye);
  const Point right = *centroid(marks.rightEye);

  Measurement m;
  m.size = d.size;
  m.eyeL = left.x <= right.x ? left : right;
  m.eyeR = left.x <= right.x ? right : left;
  m.yaw = face.yaw.value_or(0);
  if (face.pitch) m.pitch = deg(*face.pitch);

  EyeSamples samples;
  samples.add(marks.leftEye, marks.leftPupil);
  samples.add(marks.rightEye, marks.rightPupil);
  if (samples.apertures > 0) m.aperture = samples.apertureSum / samples.apertures;
  if (samples.pupils > 0)
    m.pupil = Point{samples.pupilSum.x / samples.pupils, samples.pupilSum.y / samples.pupils};

  m.nose = centroid(marks.nose);
  m.chin = lowestPoint(marks.faceContour);
  const double eyeY = (m.eyeL.y + m.eyeR.y) / 2;
  if (m.nose && m.chin && eyeY - m.chin->y > 1)
    m.faceRatio = (eyeY - m.nose->y) / (eyeY - m.chin->y);
  return m;
}

}  // namespace sodam::pose_steps
