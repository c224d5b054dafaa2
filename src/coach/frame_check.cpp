#include "coach/frame_check.h"

#include <algorithm>

#include "support/numeric.h"

namespace sodam {

namespace {

// The eyes this far apart in frame widths, or closer: the face is too far.
constexpr double nearestEyeShare = 0.055;
// The eyes' height in frame heights that shows the head and the body below it.
constexpr double lowestEyeHeight = 0.5;
constexpr double highestEyeHeight = 0.86;
constexpr double movedArmDegrees = 15;
constexpr double sureShoulder = 0.3;
constexpr double smallestWeightSum = 0.01;

FrameCheck faceCheck(const std::optional<Measurement>& m) {
  const bool face = m && !m->fromBody;
  return {"face", "얼굴", m ? "얼굴이 화면 가운데 오게 앉아요" : "얼굴이 보이게 화면 앞에 앉아요",
          0.4, face};
}

FrameCheck angleCheck(const std::optional<Measurement>& m) {
  FrameCheck check{"angle", "화면 각도와 거리", "화면을 조금 뒤로 젖혀 머리가 다 보이게 해요", 0.1,
                   false};
  if (!m) return check;
  const bool nearEnough = distance(m->eyeL, m->eyeR) >= nearestEyeShare * m->size.width;
  const double height = m->size.height > 0 ? m->eyeMid().y / m->size.height : 0;
  if (!nearEnough) {
    check.fix = "조금 더 가까이 앉아요";
  } else if (height < lowestEyeHeight) {
    check.fix = "화면 위쪽을 조금 앞으로 숙여요";
  }
  check.ok = !m->fromBody && nearEnough && height >= lowestEyeHeight && height <= highestEyeHeight;
  return check;
}

bool shouldersFound(const Measurement& m) {
  if (m.shoulderL && m.shoulderR) return true;
  return m.arms && m.arms->shoulderL && m.arms->shoulderR;
}

double travel(const Motion& motion, double Limb::*angle, const Limb Pose::*arm) {
  if (motion.keys.empty()) return 0;
  double low = motion.keys.front().pose.*arm.*angle;
  double high = low;
  for (const auto& key : motion.keys) {
    low = std::min(low, key.pose.*arm.*angle);
    high = std::max(high, key.pose.*arm.*angle);
  }
  return high - low;
}

bool moves(const Motion& motion, const Limb Pose::*arm) {
  return std::max(travel(motion, &Limb::upper, arm), travel(motion, &Limb::fore, arm)) >
         movedArmDegrees;
}

}  // namespace

FrameCheck::List FrameCheck::front(const std::optional<Measurement>& m, bool leftArmMoves,
                                   bool rightArmMoves) {
  const bool shoulders = m && shouldersFound(*m);
  // The person's left arm is on the image's right.
  const Arms arms = m && m->arms ? *m->arms : Arms{};
  const bool elbows = m && (!leftArmMoves || arms.elbowR) && (!rightArmMoves || arms.elbowL);
  return {faceCheck(m), angleCheck(m),
          FrameCheck{"shoulders", "어깨", "조금 뒤로 물러나 어깨까지 보이게 해요", 0.3, shoulders},
          FrameCheck{"arms", "팔", "팔꿈치까지 보이게 조금 뒤로 앉아요", 0.2,
                     elbows || (!leftArmMoves && !rightArmMoves)}};
}

FrameCheck::List FrameCheck::side(const std::optional<SideBody>& body) {
  std::string_view torsoFix = "몸이 다 보이게 의자를 조금 뒤로 빼요";
  if (body && body->torso && body->torso->clipped) {
    torsoFix = "화면 위쪽을 조금 앞으로 숙여 허리까지 보이게 해요";
  } else if (body) {
    torsoFix = "화면 가운데로 와서 의자를 조금 뒤로 빼요";
  }
  return {FrameCheck{"turn", "옆으로 앉기", "의자를 오른쪽으로 돌려 왼쪽 어깨가 화면을 향하게 해요",
                     0.35, body && body->sideways == true},
          FrameCheck{"torso", "머리부터 허리까지", torsoFix, 0.2,
                     body && body->torso && !body->torso->clipped},
          FrameCheck{"shoulder", "어깨", "어깨가 보이게 화면에서 조금 떨어져 앉아요", 0.25,
                     body && std::max(body->confL, body->confR) >= sureShoulder},
          FrameCheck{"arms", "팔", "팔꿈치까지 보이게 의자를 조금 뒤로 빼요", 0.2,
                     body && (body->elbowL || body->elbowR)}};
}

std::pair<bool, bool> FrameCheck::armsMoved(const Motion& motion) {
  return {moves(motion, &Pose::armL), moves(motion, &Pose::armR)};
}

double FrameCheck::score(const List& checks) {
  double passed = 0;
  double all = 0;
  for (const auto& check : checks) {
    all += check.weight;
    if (check.ok) passed += check.weight;
  }
  return passed / std::max(all, smallestWeightSum);
}

}  // namespace sodam
