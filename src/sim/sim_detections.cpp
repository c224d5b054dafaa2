#include "sim/sim_detections.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "support/numeric.h"

namespace sodam {

namespace {

using Request = Detections::Request;
using BodyJoint = Detections::BodyJoint;

// Proportions of an ordinary head in eye distances, enough for the reader's
// walk and scans to meet what a real silhouette shows them.
constexpr double faceBoxWidth = 2.2;
constexpr double faceBoxAboveEyes = 1.0;
constexpr double chinBelowEyes = 1.75;
constexpr double headHalfWidth = 1.25;
constexpr double headTopAboveEyes = 1.6;
constexpr double neckHalfWidth = 0.8;
constexpr double eyeHalfWidth = 0.22;
constexpr double limbLength = 4.0;

double eyeDistance(const Measurement& m) {
  return distance(m.eyeL, m.eyeR);
}

Point eyeMidOf(const Measurement& m) {
  return {(m.eyeL.x + m.eyeR.x) / 2, (m.eyeL.y + m.eyeR.y) / 2};
}

double chinY(const Measurement& m) {
  return m.chin ? m.chin->y : eyeMidOf(m).y - chinBelowEyes * eyeDistance(m);
}

// Eight points on the ellipse, so their centroid is the centre and their
// box's height over width is `aperture`.
void eyeRegion(Point centre, double halfWidth, double aperture, std::vector<Point>& out) {
  for (int i = 0; i < 8; ++i) {
    const double a = i * std::numbers::pi / 4;
    out.push_back(
        {centre.x + halfWidth * std::cos(a), centre.y + aperture * halfWidth * std::sin(a)});
  }
}

void pupilRegion(Point eye, double halfWidth, double aperture, Point pupil,
                 std::vector<Point>& out) {
  const double halfHeight = aperture * halfWidth;
  out.push_back(
      {eye.x - halfWidth + pupil.x * 2 * halfWidth, eye.y - halfHeight + pupil.y * 2 * halfHeight});
}

// The columns whose centres lie in [x0, x1] of the image.
void fillSpan(Detections::PersonMask& mask, int row, double x0, double x1, double frameWidth) {
  const double scale = mask.width / frameWidth;
  // Clamped before the cast: a limb far outside the frame gives columns no
  // int can hold.
  const double firstColumn = std::ceil(x0 * scale - 0.5);
  const double lastColumn = std::floor(x1 * scale - 0.5);
  if (!(firstColumn <= lastColumn)) return;
  const int first = static_cast<int>(std::clamp(firstColumn, 0.0, double(mask.width)));
  const int last = static_cast<int>(std::clamp(lastColumn, -1.0, double(mask.width - 1)));
  if (first > last) return;
  auto* rowStart = mask.bytes.data() + static_cast<std::size_t>(row) * mask.width;
  std::fill(rowStart + first, rowStart + last + 1, std::uint8_t{0xFF});
}

// The part of the torso's row below the sloping shoulder line.
void torsoSpan(const Measurement& m, double y, double halfWidth, double& x0, double& x1) {
  const Point l = *m.shoulderL, r = *m.shoulderR;
  const double mid = (l.x + r.x) / 2;
  x0 = mid - halfWidth;
  x1 = mid + halfWidth;
  const double slope = (r.y - l.y) / std::max(r.x - l.x, 1e-9);
  if (std::abs(slope) < 1e-9) {
    if (y > l.y) x1 = x0 - 1;
    return;
  }
  const double crossing = l.x + (y - l.y) / slope;
  if (slope > 0)
    x0 = std::max(x0, crossing);
  else
    x1 = std::min(x1, crossing);
}

void setJoint(Detections::BodyPose& body, BodyJoint joint, std::optional<Point> pixels, Size frame,
              float confidence) {
  if (!pixels) return;
  const Point n{pixels->x / frame.width, pixels->y / frame.height};
  if (n.x < 0 || n.x > 1 || n.y < 0 || n.y > 1) return;
  body[joint] = Detections::Joint{n, confidence};
}

std::optional<Point> below(std::optional<Point> p, double by) {
  if (!p) return std::nullopt;
  return Point{p->x, p->y - by};
}

}  // namespace

Detections::Face SimDetections::faceOf(const Measurement& m) {
  const double ipd = eyeDistance(m);
  const Point mid = eyeMidOf(m);
  const double bottom = chinY(m) - 0.1 * ipd;
  const double top = mid.y + faceBoxAboveEyes * ipd;
  const double width = faceBoxWidth * ipd;
  Detections::Face face;
  face.boundingBox = Rect{{(mid.x - width / 2) / m.size.width, bottom / m.size.height},
                          {width / m.size.width, (top - bottom) / m.size.height}};
  face.yaw = m.yaw;
  if (m.pitch) face.pitch = rad(*m.pitch);
  return face;
}

void SimDetections::landmarksOf(const Measurement& m, Detections::FaceLandmarks& out) {
  out.clear();
  const double ipd = eyeDistance(m);
  const double halfWidth = eyeHalfWidth * ipd;
  const double aperture = m.aperture.value_or(0.3);
  // The person's left eye is on the image's right.
  eyeRegion(m.eyeR, halfWidth, aperture, out.leftEye);
  eyeRegion(m.eyeL, halfWidth, aperture, out.rightEye);
  if (m.pupil) {
    pupilRegion(m.eyeR, halfWidth, aperture, *m.pupil, out.leftPupil);
    pupilRegion(m.eyeL, halfWidth, aperture, *m.pupil, out.rightPupil);
  }
  if (m.nose) {
    const Point n = *m.nose;
    out.nose = {n,
                {n.x - 0.15 * ipd, n.y},
                {n.x + 0.15 * ipd, n.y},
                {n.x, n.y + 0.2 * ipd},
                {n.x, n.y - 0.2 * ipd}};
  }
  if (m.chin) {
    const Point c = *m.chin;
    const Point mid = eyeMidOf(m);
    for (double side : {-1.0, 1.0}) {
      out.faceContour.push_back({mid.x + side * 1.2 * ipd, mid.y});
      out.faceContour.push_back({c.x + side * 1.1 * ipd, c.y + 1.0 * ipd});
      out.faceContour.push_back({c.x + side * 0.6 * ipd, c.y + 0.3 * ipd});
    }
    out.faceContour.push_back(c);
  }
}

void SimDetections::maskOf(const Measurement& m, Detections::PersonMask& out) const {
  out.width = static_cast<int>(maskSize.width);
  out.height = static_cast<int>(maskSize.height);
  out.bytes.assign(static_cast<std::size_t>(out.width) * out.height, 0);
  const double ipd = eyeDistance(m);
  const Point mid = eyeMidOf(m);
  const double headBottom = chinY(m);
  const double headTop = mid.y + headTopAboveEyes * ipd;
  const double headCentre = (headTop + headBottom) / 2;
  const double headHalfHeight = (headTop - headBottom) / 2;
  const auto shoulders = m.shoulders();
  const double shoulderY =
      shoulders ? (shoulders->first.y + shoulders->second.y) / 2 : headBottom - 2 * ipd;
  const double neckX =
      shoulders ? ((shoulders->first.x + shoulders->second.x) / 2 + mid.x) / 2 : mid.x;
  const double torsoHalf =
      shoulders ? (m.torsoWidth ? *m.torsoWidth / 2
                                : 0.55 * distance(shoulders->first, shoulders->second))
                : 0;

  for (int row = 0; row < out.height; ++row) {
    const double y = m.size.height * (1 - (row + 0.5) / out.height);
    const double dy = (y - headCentre) / headHalfHeight;
    if (std::abs(dy) <= 1) {
      const double half = headHalfWidth * ipd * std::sqrt(1 - dy * dy);
      fillSpan(out, row, mid.x - half, mid.x + half, m.size.width);
    }
    if (y <= headBottom + 0.5 * ipd && y >= shoulderY - ipd)
      fillSpan(out, row, neckX - neckHalfWidth * ipd, neckX + neckHalfWidth * ipd, m.size.width);
    if (shoulders) {
      double x0 = 0, x1 = 0;
      torsoSpan(m, y, torsoHalf, x0, x1);
      fillSpan(out, row, x0, x1, m.size.width);
    }
  }
}

Detections::BodyPose SimDetections::bodyOf(const Measurement& m) const {
  Detections::BodyPose body;
  const Size frame = m.size;
  const double ipd = eyeDistance(m);
  const float c = jointConfidence;
  const Point mid = eyeMidOf(m);
  setJoint(body, BodyJoint::nose, m.nose.value_or(Point{mid.x, mid.y - 0.6 * ipd}), frame, c);
  // A person facing the camera shows the right side of the body on the image's left.
  setJoint(body, BodyJoint::rightEye, m.eyeL, frame, c);
  setJoint(body, BodyJoint::leftEye, m.eyeR, frame, c);
  setJoint(body, BodyJoint::rightEar, Point{m.eyeL.x - 0.6 * ipd, m.eyeL.y - 0.2 * ipd}, frame, c);
  setJoint(body, BodyJoint::leftEar, Point{m.eyeR.x + 0.6 * ipd, m.eyeR.y - 0.2 * ipd}, frame, c);
  setJoint(body, BodyJoint::rightShoulder, m.shoulderL, frame, c);
  setJoint(body, BodyJoint::leftShoulder, m.shoulderR, frame, c);
  const Arms arms = m.arms.value_or(Arms{});
  const auto elbowL = arms.elbowL ? arms.elbowL : below(m.shoulderL, limbLength * ipd);
  const auto elbowR = arms.elbowR ? arms.elbowR : below(m.shoulderR, limbLength * ipd);
  setJoint(body, BodyJoint::rightElbow, elbowL, frame, c);
  setJoint(body, BodyJoint::leftElbow, elbowR, frame, c);
  setJoint(body, BodyJoint::rightWrist, arms.wristL ? arms.wristL : below(elbowL, limbLength * ipd),
           frame, c);
  setJoint(body, BodyJoint::leftWrist, arms.wristR ? arms.wristR : below(elbowR, limbLength * ipd),
           frame, c);
  return body;
}

void SimDetections::render(const std::optional<SimPerson>& person, Size frame,
                           const FramePlan& plan, Detections& out) const {
  out.clear();
  const Measurement* face = person ? &person->face : nullptr;
  out.size = face ? face->size : frame;
  if (plan.bodyAndHands) {
    if (person) out.bodies.push_back(person->body ? *person->body : bodyOf(*face));
    if (person) out.hands = person->hands;
    out.markRan(Request::body);
    out.markRan(Request::hands);
  }
  const bool faceShows = face && !face->fromBody;
  if (faceShows) out.faces.push_back(faceOf(*face));
  out.markRan(Request::faces);
  if (plan.personWanted(out)) {
    if (person && person->outline) {
      emptyMask(out.mask);
      person->outline->draw(out.mask, out.size);
    } else if (person) {
      maskOf(*face, out.mask);
    } else {
      emptyMask(out.mask);
    }
    out.markRan(Request::person);
  }
  if (faceShows) {
    landmarksOf(*face, out.landmarks);
    out.markRan(Request::landmarks);
  }
  if (const auto region = plan.sceneRegion(out)) {
    sceneOf(*person, *region, out);
    out.markRan(Request::scene);
  }
}

// What the classifier names in the region around the hands: a phone held
// there, else the paper of the desk.
void SimDetections::sceneOf(const SimPerson& person, Rect region, Detections& out) const {
  bool phoneSeen = false;
  if (person.phone) {
    const Point p{person.phone->x / out.size.width, person.phone->y / out.size.height};
    phoneSeen = p.x >= region.minX() && p.x <= region.maxX() && p.y >= region.minY() &&
                p.y <= region.maxY();
  }
  if (phoneSeen) {
    out.scene.push_back({"consumer_electronics", phoneConfidence});
    out.scene.push_back({"computer", 0.08f});
  } else {
    out.scene.push_back({"paper", 0.4f});
    out.scene.push_back({"consumer_electronics", 0.06f});
  }
}

void SimDetections::emptyMask(Detections::PersonMask& mask) const {
  mask.width = static_cast<int>(maskSize.width);
  mask.height = static_cast<int>(maskSize.height);
  mask.bytes.assign(static_cast<std::size_t>(mask.width) * mask.height, 0);
}

}  // namespace sodam
