// The mirror sideways: the trunk, head and arms of a SideBody against the
// user's neutral side posture.
//
// The design speaks of a sideways person's "left" and "right" landmarks as
// the person's own; a SideBody names its points by the image's sides. A
// person turned sideways shows the near shoulder behind the head, so for a
// person facing the image's left (turned to their right, the left shoulder to
// the screen) the near landmarks are the image's right ones, and the other
// way round. `nearIsRight` below makes that translation in one place.
#include <algorithm>
#include <cmath>

#include "coach/body_mirror.h"
#include "coach/body_mirror_links.h"
#include "posture/face_pitch.h"
#include "support/numeric.h"

namespace sodam {

namespace BodyMirror {

namespace {

using Joint = FollowScore::Joint;
using links::forearmCm;
using links::headShiftCm;
using links::upperArmCm;

// A vote needs one shoulder seen this much surer than the other.
constexpr double confidenceLead = 0.25;
// Or the nose this far ahead of the ear compared with their height difference.
constexpr double profileRatio = 1.2;
// Body sizes that set the picture's scale in pixels per centimetre.
constexpr double torsoRowWidthCm = 25;
constexpr double headWidthCm = 17;
constexpr double fallbackScale = 10;
constexpr double leanGain = 1.2;
// A bent trunk hides the head's shift, so it is read only nearly upright.
constexpr double uprightFlexDeg = 6;
constexpr double shoulderBelowHeadWidths = 1.25;
// The band's front edge this far ahead of neutral is an arm reaching forward.
constexpr double reachCm = 15;
// A torso row this much wider than at rest holds an arm; a hand or elbow a
// quarter of the rest width off the row's middle shows on which side.
constexpr double widenedRatio = 1.25;
constexpr double armOffsetWidths = 0.25;

bool nearIsRight(double facing) {
  return facing < 0;
}

struct Landmarks {
  std::optional<Point> shoulder, elbow, wrist;
};

Landmarks near(const SideBody& b, double facing) {
  if (nearIsRight(facing)) return {b.shoulderR, b.elbowR, b.wristR};
  return {b.shoulderL, b.elbowL, b.wristL};
}

Landmarks far(const SideBody& b, double facing) {
  if (nearIsRight(facing)) return {b.shoulderL, b.elbowL, b.wristL};
  return {b.shoulderR, b.elbowR, b.wristR};
}

std::optional<double> medianOf(const std::vector<SideNeutral>& raws,
                               std::optional<double> SideNeutral::*field) {
  std::vector<double> values;
  for (const auto& raw : raws) {
    if (raw.*field) values.push_back(*(raw.*field));
  }
  return median(std::move(values));
}

double sideAngle(Point from, Point to, double facing) {
  return deg(std::atan2((to.x - from.x) * facing, -(to.y - from.y)));
}

// The hanging elbow: of the two solutions the lower one.
std::optional<Limb> limb(Point shoulder, const Landmarks& joints, double facing, double scale) {
  if (!joints.elbow && !joints.wrist) return std::nullopt;
  Point elbow;
  if (joints.elbow) {
    elbow = *joints.elbow;
  } else {
    const auto [a, b] =
        links::elbows(shoulder, *joints.wrist, upperArmCm * scale, forearmCm * scale);
    elbow = a.y <= b.y ? a : b;
  }
  Limb result;
  result.upper = sideAngle(shoulder, elbow, facing);
  result.fore = joints.wrist ? sideAngle(elbow, *joints.wrist, facing) : result.upper;
  return result;
}

std::optional<Point> armShoulder(const SideBody& body, double facing) {
  if (auto s = near(body, facing).shoulder) return s;
  if (auto s = far(body, facing).shoulder) return s;
  if (body.torso) {
    return Point{(body.torso->hi + body.torso->lo) / 2,
                 body.head.y - shoulderBelowHeadWidths * body.headWidth};
  }
  return std::nullopt;
}

// An arm held forward past what the skeleton follows still pushes the
// body's band forward.
std::optional<Limb> reachingArm(const SideBody& body, const SideNeutral& neutral, Point shoulder) {
  if (!body.band || !neutral.front) return std::nullopt;
  const double front = neutral.facing > 0 ? body.band->hi : -body.band->lo;
  if ((front - *neutral.front) / neutral.scale <= reachCm) return std::nullopt;
  const Point edge = neutral.facing > 0 ? Point{body.band->hi, body.band->hiY}
                                        : Point{body.band->lo, body.band->loY};
  const double angle = sideAngle(shoulder, edge, neutral.facing);
  return Limb{angle, angle, 0, false};
}

void readHead(const SideBody& body, const SideNeutral& neutral, const SideNeutral& raw,
              Reading& r) {
  Pose& p = r.pose;
  if (raw.lean && neutral.lean) {
    p.spineFlex = clamp((*raw.lean - *neutral.lean) * leanGain, -25, 35);
    r.measured.insert(Joint::spineFlex);
  }
  if (raw.forward && neutral.forward && std::abs(p.spineFlex) < uprightFlexDeg) {
    p.headForward = clamp((*raw.forward - *neutral.forward) / headShiftCm, -1.5, 1.5);
    r.measured.insert(Joint::headForward);
  }
  std::optional<double> nod;
  if (body.faceRatio && neutral.faceRatio) {
    nod = FacePitch::degrees(*body.faceRatio, *neutral.faceRatio);
  } else if (raw.pitch && neutral.pitch) {
    nod = *raw.pitch - *neutral.pitch;
  }
  if (nod) {
    p.neckFlex = clamp(*nod, -50, 55);
    r.measured.insert(Joint::neckFlex);
  }
}

// +1 when the arms are held ahead of the trunk, -1 behind it, 0 when the
// frame can't tell. The hands lead; a hanging elbow says little.
int armsSide(const SideBody& b, double facing, double middle, double restWidth) {
  int votes = 0;
  const auto vote = [&](const std::optional<Point>& p) {
    if (!p) return;
    const double ahead = facing * (p->x - middle);
    if (std::abs(ahead) > armOffsetWidths * restWidth) votes += ahead > 0 ? 1 : -1;
  };
  vote(b.wristL);
  vote(b.wristR);
  if (!b.wristL && !b.wristR) {
    vote(b.elbowL);
    vote(b.elbowR);
  }
  return votes > 0 ? 1 : votes < 0 ? -1 : 0;
}

// Arms clasped behind the back or held forward at the torso's row widen it
// to one side; the edge away from them still stands where the trunk is.
double trunkMiddle(const SideBody& b, double facing, std::optional<double> restWidth) {
  const auto& t = *b.torso;
  const double middle = (t.hi + t.lo) / 2;
  if (!restWidth || t.hi - t.lo < widenedRatio * *restWidth) return middle;
  const int arms = armsSide(b, facing, middle, *restWidth);
  if (arms == 0) return middle;
  // The edge away from the arms: the front one when they are behind.
  const bool frontEdge = arms < 0;
  const double edge = (facing > 0) == frontEdge ? t.hi : t.lo;
  const double inward = (frontEdge ? -facing : facing) * *restWidth / 2;
  return edge + inward;
}

}  // namespace

std::pair<Point, Point> links::elbows(Point s, Point w, double upper, double fore) {
  const double d = distance(s, w);
  const double dd = std::max(d, 1.0);
  const double ux = (w.x - s.x) / dd;
  const double uy = (w.y - s.y) / dd;
  if (upper + fore <= d) {
    const Point straight{s.x + upper * ux, s.y + upper * uy};
    return {straight, straight};
  }
  const double a =
      std::acos(clamp((upper * upper + d * d - fore * fore) / (2 * upper * dd), -1, 1));
  const double c = std::cos(a), sn = std::sin(a);
  return {Point{s.x + upper * (ux * c - uy * sn), s.y + upper * (ux * sn + uy * c)},
          Point{s.x + upper * (ux * c + uy * sn), s.y + upper * (uy * c - ux * sn)}};
}

std::optional<double> facingVote(const SideBody& body) {
  // The sure shoulder is the near one, behind the head: on the image's right
  // for a person facing its left.
  if (body.confR - body.confL > confidenceLead) return -1;
  if (body.confL - body.confR > confidenceLead) return 1;
  if (!body.ear || !body.nose || body.faceRatio) return std::nullopt;
  const double dx = std::abs(body.nose->x - body.ear->x);
  const double dy = std::abs(body.nose->y - body.ear->y);
  if (dx <= profileRatio * dy) return std::nullopt;
  return body.ear->x < body.nose->x ? 1 : -1;
}

SideNeutral sideRaw(const SideBody& body, double facing, std::optional<double> restWidth) {
  SideNeutral raw;
  raw.facing = facing;
  if (body.torso) {
    const auto& t = *body.torso;
    raw.width = t.hi - t.lo;
    raw.scale = std::max(*raw.width / torsoRowWidthCm, 1.0);
    raw.lean = deg(std::atan2(facing * (body.head.x - trunkMiddle(body, facing, restWidth)),
                              std::max(body.head.y - t.y, 1.0)));
  } else {
    raw.scale = std::max(body.headWidth / headWidthCm, 1.0);
  }
  const Landmarks n = near(body, facing);
  const auto shoulder = n.shoulder ? n.shoulder : far(body, facing).shoulder;
  if (shoulder) raw.forward = facing * (body.head.x - shoulder->x) / raw.scale;
  if (body.band) raw.front = facing > 0 ? body.band->hi : -body.band->lo;
  raw.faceRatio = body.faceRatio;
  if (body.ear && body.nose) {
    raw.pitch =
        deg(std::atan2(-(body.nose->y - body.ear->y), facing * (body.nose->x - body.ear->x)));
  }
  return raw;
}

SideNeutral calibrate(const std::vector<SideBody>& samples) {
  double votes = 0;
  for (const auto& body : samples)
    votes += facingVote(body).value_or(0);
  SideNeutral neutral;
  neutral.facing = votes > 0 ? 1 : -1;
  std::vector<SideNeutral> raws;
  raws.reserve(samples.size());
  for (const auto& body : samples)
    raws.push_back(sideRaw(body, neutral.facing));
  std::vector<double> scales;
  for (const auto& raw : raws)
    scales.push_back(raw.scale);
  neutral.scale = median(std::move(scales)).value_or(fallbackScale);
  neutral.lean = medianOf(raws, &SideNeutral::lean);
  neutral.forward = medianOf(raws, &SideNeutral::forward);
  neutral.front = medianOf(raws, &SideNeutral::front);
  neutral.width = medianOf(raws, &SideNeutral::width);
  neutral.faceRatio = medianOf(raws, &SideNeutral::faceRatio);
  neutral.pitch = medianOf(raws, &SideNeutral::pitch);
  return neutral;
}

Reading sidePose(const SideBody& body, const SideNeutral& neutral) {
  Reading r{Pose::side(), {}};
  const double facing = neutral.facing;
  readHead(body, neutral, sideRaw(body, facing, neutral.width), r);
  const auto shoulder = armShoulder(body, facing);
  if (!shoulder) return r;
  auto nearArm = limb(*shoulder, near(body, facing), facing, neutral.scale);
  if (!nearArm) nearArm = reachingArm(body, neutral, *shoulder);
  if (nearArm) {
    r.pose.armR = *nearArm;
    r.measured.insert(Joint::armR);
  }
  if (auto farArm = limb(*shoulder, far(body, facing), facing, neutral.scale)) {
    farArm->behind = true;
    r.pose.armL = *farArm;
    r.measured.insert(Joint::armL);
  }
  return r;
}

}  // namespace BodyMirror

}  // namespace sodam
