#include "posture/baseline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "posture/pinhole.h"

namespace sodam {
namespace {

using pinhole::Sitter;
using testing::ElementsAre;
const Date learnedDate{700000000};

std::vector<Measurement> atDepths(std::initializer_list<double> depths) {
  std::vector<Measurement> out;
  for (double z : depths) {
    Sitter s;
    s.eyeY = 0;
    s.eyeZ = z;
    s.shoulders = false;
    out.push_back(s.measure());
  }
  return out;
}

TEST(BaselineLearn, NeedsEightUsableFramesAndTakesANearQuantileOfTheDistance) {
  EXPECT_FALSE(Baseline::learn(atDepths({50, 51, 52, 53, 54, 55, 56}), std::nullopt, learnedDate));
  auto frames = atDepths({57, 50, 56, 51, 55, 52, 54, 53});
  const auto base = Baseline::learn(frames, 110, learnedDate);
  ASSERT_TRUE(base);
  EXPECT_NEAR(base->eyeDistance, 52, 1e-9);  // index round(0.3 * 7) = 2, below the median
  EXPECT_EQ(base->learnedAt, learnedDate);
  EXPECT_EQ(base->pitch, 20);
  EXPECT_FALSE(base->hasShoulders());
  frames[0].eyeR = frames[0].eyeL;  // an unusable frame does not count
  EXPECT_FALSE(Baseline::learn(frames, std::nullopt, learnedDate));
}

TEST(BaselineLearn, LearnsShouldersOnlyWhenThreeFifthsOfTheFramesShowThem) {
  const auto withShoulders = [](int shouldered) {
    std::vector<Measurement> frames;
    for (int i = 0; i < 8; ++i) {
      Sitter s;
      s.shoulders = i < shouldered;
      frames.push_back(s.measure());
    }
    return *Baseline::learn(frames, std::nullopt, learnedDate);
  };
  EXPECT_FALSE(withShoulders(4).hasShoulders());  // 4 < 0.6 * 8
  const auto base = withShoulders(5);
  ASSERT_TRUE(base.hasShoulders());
  // The torso is 34 cm at 60 cm; put in the eyes' plane at 55 cm it reads
  // narrower, and that width then places the shoulders at 55 cm again.
  EXPECT_NEAR(*base.shoulderWidthCm, 34 * 55.0 / 60, 1e-9);
  EXPECT_NEAR(*base.depthGap, 0, 1e-9);
  EXPECT_NEAR(*base.shoulderDepth, 55, 1e-9);
  EXPECT_NEAR(*base.neck, 5 - (5 - 20) * 55.0 / 60, 1e-9);
  EXPECT_TRUE(base.shoulderRay && base.frame->neck);
}

TEST(BaselineLearn, GazeNeedsSixOpenEyesAndFrameNeedsFourFaces) {
  auto frames = pinhole::frames(Sitter{}, 6);
  for (auto& m : frames)
    m.aperture = 0.25;
  frames[0].nose = Point{700, 300};  // the others have no nose and count as turn 0
  frames[1].pupil = Point{0.4, 0.6};
  const auto gaze = Baseline::Gaze::learn(frames);
  ASSERT_TRUE(gaze);
  EXPECT_EQ(*gaze, (Baseline::Gaze{0.25, 0.4, 0.6, 0}));
  EXPECT_FALSE(Baseline::Gaze::learn({frames.begin(), frames.end() - 1}));
  for (auto& m : frames)
    m.aperture = 0.08;
  EXPECT_FALSE(Baseline::Gaze::learn(frames));

  frames[0].fromBody = true;
  frames.resize(4);
  EXPECT_FALSE(Baseline::Frame::learn(frames));
  frames[0].fromBody = false;
  const auto frame = Baseline::Frame::learn(frames);
  ASSERT_TRUE(frame);
  EXPECT_NEAR(frame->distance, std::hypot(5, 55), 1e-9);
}

TEST(BaselineConcerns, ComplainInOrderWithUnsignedRoundedNumbers) {
  Baseline base;
  base.eyeDistance = 38;
  base.eyeAngle = 7;
  base.shoulderAngle = 6;
  EXPECT_THAT(Baseline::concerns({}, base), testing::IsEmpty());
  base.eyeAngle = -7.5;
  base.shoulderAngle = -6.5;
  base.eyeDistance = 37.9;
  EXPECT_THAT(Baseline::concerns({}, base),
              ElementsAre("고개가 한쪽으로 8도 기울어 있어요", "어깨가 한쪽으로 7도 기울어 있어요",
                          "화면에 너무 가까이(약 38센티) 앉아 있어요"));

  base = Baseline{};
  base.eyeDistance = 100.5;
  Sitter aside;
  aside.eyeX = 25;  // eyes at 0.86 of the width
  auto frames = pinhole::frames(aside, 3);
  for (auto& m : frames) {
    m.nose = Point{m.eyeMid().x - 0.29 * m.eyePixels() * 0.3, 300};  // turned 17.5°
    m.pitch = -21;
  }
  EXPECT_THAT(Baseline::concerns(frames, base),
              ElementsAre("화면에서 너무 멀리 떨어져 있어요", "몸이 화면 한쪽으로 치우쳐 있어요",
                          "고개가 옆으로 돌아가 있어요", "고개를 많이 숙이거나 젖히고 있어요"));
  for (auto& m : frames)
    m.fromBody = true;  // body-pose frames say nothing about the face
  EXPECT_THAT(Baseline::concerns(frames, base), testing::SizeIs(1));
}

TEST(BaselineMoved, AdjustsToTheNewSetupButKeepsTheDateAndTheBuild) {
  auto base = *Baseline::learn(pinhole::frames(Sitter{}), std::nullopt, learnedDate);
  base.gaze = Baseline::Gaze{0.3, std::nullopt, std::nullopt, 2};
  base.frame->neck = 1.5;
  base.frame->torso = std::nullopt;

  Sitter moved;
  moved.eyeZ = 65;
  const auto adjusted = Baseline::moved(base, pinhole::frames(moved), std::nullopt);
  ASSERT_TRUE(adjusted);
  EXPECT_EQ(adjusted->learnedAt, learnedDate);
  EXPECT_NEAR(adjusted->eyeDistance, std::hypot(5, 65), 1e-9);
  EXPECT_EQ(adjusted->gaze, base.gaze);
  EXPECT_EQ(adjusted->frame->neck, 1.5);
  EXPECT_TRUE(adjusted->frame->torso);  // base had none to impose

  EXPECT_FALSE(Baseline::moved(base, pinhole::frames(moved, 7), std::nullopt));
  moved.eyeZ = 80;  // 45 % farther: not the same setup any more
  EXPECT_FALSE(Baseline::moved(base, pinhole::frames(moved), std::nullopt));
  moved.eyeZ = 45;
  moved.rollDeg = 9;  // learned crooked: a concern
  EXPECT_FALSE(Baseline::moved(base, pinhole::frames(moved), std::nullopt));
}

TEST(BaselineLimits, PlausibleIncludesBothEnds) {
  for (auto [distance, plausible] :
       {std::pair{24.99, false}, {25.0, true}, {100.0, true}, {100.01, false}}) {
    Baseline base;
    base.eyeDistance = distance;
    EXPECT_EQ(base.plausible(), plausible) << distance;
  }
}

Baseline storedBaseline() {
  Baseline base;
  base.eyeDistance = 55.5;
  base.eyeAngle = -1.25;
  base.pitch = 10;
  base.lid = 100;
  base.neck = 18.5;
  base.learnedAt = Date{763000000.5};
  base.gaze = Baseline::Gaze{0.3, 0.5, std::nullopt, -2};
  base.frame = Baseline::Frame{1.5, 56, 2.2, std::nullopt};
  return base;
}

TEST(BaselineJson, RoundTripsAndLeavesAbsentFieldsOut) {
  const auto base = storedBaseline();
  const auto json = base.toJson();
  EXPECT_EQ(json["version"], 3);
  EXPECT_EQ(json["learnedAt"], 763000000.5);
  EXPECT_EQ(json["gaze"]["pupilX"], 0.5);
  EXPECT_FALSE(json.contains("faceRatio") || json["gaze"].contains("pupilY") ||
               json["frame"].contains("torso"));
  EXPECT_EQ(Baseline::fromJson(nlohmann::json::parse(json.dump())), base);
  EXPECT_EQ(Baseline{}.toJson().size(), 7u);  // only the required keys
}

TEST(BaselineJson, ReadsAsNoneWhenARequiredKeyOrTheVersionIsWrong) {
  const auto good = storedBaseline().toJson();
  const auto readsWith = [&](auto change) {
    auto json = good;
    change(json);
    return Baseline::fromJson(json);
  };
  for (const char* key :
       {"version", "eyeDistance", "eyeHeight", "eyeAngle", "faceElevation", "pitch", "learnedAt"}) {
    EXPECT_FALSE(readsWith([&](auto& j) { j.erase(key); })) << key;
    EXPECT_FALSE(readsWith([&](auto& j) { j[key] = "3"; })) << key;
  }
  EXPECT_FALSE(readsWith([](auto& j) { j["version"] = 2; }));
  EXPECT_FALSE(readsWith([](auto& j) { j["lid"] = "open"; }));
  EXPECT_FALSE(readsWith([](auto& j) { j["gaze"].erase("aperture"); }));
  const auto nulls = readsWith([](auto& j) { j["lid"] = j["gaze"] = nullptr; });
  ASSERT_TRUE(nulls);
  EXPECT_FALSE(nulls->lid || nulls->gaze);
  EXPECT_FALSE(Baseline::fromJson(nlohmann::json::array()));
}

}  // namespace
}  // namespace sodam
