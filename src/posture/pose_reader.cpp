#include "posture/pose_reader.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "posture/pose_reader_steps.h"

namespace sodam {

using Request = Detections::Request;

namespace {

// Whether this frame's detections can give a Measurement at all, so that the
// classifier does not run for an empty chair.
bool measurable(const Detections& d, bool arms) {
  if (!d.succeeded(Request::faces)) return false;
  if (PoseReader::widestFace(d.faces)) return pose_steps::eyesReadable(d);
  return arms && pose_steps::standIn(d).has_value();
}

bool movedLittle(Rect from, Rect to) {
  constexpr double limit = 0.02;
  return std::abs(from.midX() - to.midX()) < limit && std::abs(from.midY() - to.midY()) < limit;
}

}  // namespace

bool FramePlan::personWanted(const Detections& sofar) const {
  if (!person) return false;
  const bool faceFound = sofar.succeeded(Request::faces) && !sofar.faces.empty();
  return faceFound || bodyAndHands;
}

std::optional<Rect> FramePlan::sceneRegion(const Detections& sofar) const {
  if (!scene || !measurable(sofar, bodyAndHands)) return std::nullopt;
  return PoseReader::phoneRegion(sofar);
}

FramePlan PoseReader::plan(bool arms, bool light, bool phone) const {
  const std::int64_t next = frameCount_ + 1;
  FramePlan plan;
  plan.bodyAndHands = arms;
  plan.person = !light || next % 3 == 0;
  plan.scene = phone && next % 2 == 0;
  return plan;
}

std::optional<std::size_t> PoseReader::widestFace(const std::vector<Detections::Face>& faces) {
  std::optional<std::size_t> widest;
  for (std::size_t i = 0; i < faces.size(); ++i) {
    if (!widest || faces[i].boundingBox.size.width > faces[*widest].boundingBox.size.width)
      widest = i;
  }
  return widest;
}

PoseReader::Result PoseReader::read(const Detections& d, bool arms, bool light, bool phone) {
  ++frameCount_;
  const bool facesRan = d.succeeded(Request::faces);
  const auto widest = facesRan ? widestFace(d.faces) : std::nullopt;
  const bool maskDue = (widest || arms) && (!light || frameCount_ % 3 == 0);
  const Detections::PersonMask* mask =
      maskDue && d.succeeded(Request::person) && !d.mask.empty() ? &d.mask : nullptr;

  Result result;
  std::optional<Rect> faceBox;
  if (widest) {
    const auto& face = d.faces[*widest];
    faceBox = face.boundingBox;
    result.measurement = pose_steps::readFace(d, face);
    if (result.measurement) placeShoulders(*result.measurement, mask, face.boundingBox);
  } else if (arms && facesRan) {
    if (auto stand = pose_steps::standIn(d)) {
      Measurement m;
      m.size = d.size;
      m.eyeL = stand->eyeL;
      m.eyeR = stand->eyeR;
      m.nose = stand->nose;
      m.fromBody = true;
      faceBox = stand->face;
      result.measurement = m;
    }
  }

  if (arms && result.measurement)
    result.measurement->arms = pose_steps::readArms(d, mask, *faceBox, lastWristL_, lastWristR_);
  if (arms) {
    const auto ratio = result.measurement ? result.measurement->faceRatio : std::nullopt;
    result.side = pose_steps::readSide(d, mask, ratio);
  }
  if (phone && result.measurement && frameCount_ % 2 == 0 && phoneRegion(d) &&
      d.succeeded(Request::scene)) {
    result.measurement->phone = phoneScore(d.scene);
  }
  return result;
}

// A mask frame replaces what the last one found, even with nothing, so that
// shoulders are never carried over from before the latest mask.
void PoseReader::placeShoulders(Measurement& m, const Detections::PersonMask* mask, Rect face) {
  if (mask) {
    lastShoulders_ = pose_steps::shoulders(*mask, face, m.size, torsoRuns_);
  } else if (!lastShoulders_ || !movedLittle(lastShoulders_->face, face)) {
    return;
  }
  if (!lastShoulders_) return;
  m.shoulderL = lastShoulders_->left;
  m.shoulderR = lastShoulders_->right;
  m.torsoWidth = lastShoulders_->width;
  m.torsoY = lastShoulders_->widthY;
}

float PoseReader::phoneScore(const std::vector<Detections::Classification>& observations) {
  auto confidence = [&](std::string_view label) -> float {
    for (const auto& o : observations) {
      if (o.identifier == label) return o.confidence;
    }
    return 0;
  };
  const float computers =
      std::max({confidence("computer"), confidence("laptop"), confidence("computer_keyboard"),
                confidence("computer_monitor")});
  return std::max(0.0f, confidence("consumer_electronics") - computers - 0.5f * confidence("pen"));
}

namespace {

struct Bounds {
  double minX = 1, minY = 1, maxX = 0, maxY = 0;
  bool any = false;
  void add(Point p) {
    minX = std::min(minX, p.x);
    minY = std::min(minY, p.y);
    maxX = std::max(maxX, p.x);
    maxY = std::max(maxY, p.y);
    any = true;
  }
};

Bounds handPoints(const Detections& d) {
  Bounds bounds;
  for (const auto& hand : d.hands) {
    for (const auto& joint : hand.joints) {
      if (joint && joint->confidence >= 0.3f) bounds.add(joint->location);
    }
  }
  if (bounds.any || d.bodies.empty()) return bounds;
  for (auto wrist : {Detections::BodyJoint::leftWrist, Detections::BodyJoint::rightWrist}) {
    const auto& joint = d.bodies.front()[wrist];
    if (joint && joint->confidence >= 0.2f) bounds.add(joint->location);
  }
  return bounds;
}

}  // namespace

std::optional<Rect> PoseReader::phoneRegion(const Detections& d) {
  const Bounds box = handPoints(d);
  if (!box.any || d.size.width <= 0 || d.size.height <= 0) return std::nullopt;
  const double aspect = d.size.width / d.size.height;
  // A square in pixels: its side in units of the frame's height, then in x.
  const double sideY =
      std::max(0.28, 2.2 * std::max(box.maxY - box.minY, (box.maxX - box.minX) * aspect));
  const double sideX = sideY / aspect;
  const double midX = (box.minX + box.maxX) / 2;
  const double midY = (box.minY + box.maxY) / 2;
  const double lox = std::max(0.0, midX - sideX / 2);
  const double hix = std::min(1.0, midX + sideX / 2);
  const double loy = std::max(0.0, midY - sideY / 2);
  const double hiy = std::min(1.0, midY + sideY / 2);
  if (hix - lox <= 0.05 || hiy - loy <= 0.05) return std::nullopt;
  return Rect{{lox, loy}, {hix - lox, hiy - loy}};
}

}  // namespace sodam
