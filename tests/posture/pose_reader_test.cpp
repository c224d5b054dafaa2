#include "posture/pose_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace sodam {
namespace {

using Request = Detections::Request;
using BodyJoint = Detections::BodyJoint;

// A 200x200 frame with a mask of the same grid, so mask columns are pixels
// and a mask row r is image y = 200 - r - 0.5.
constexpr double side = 200;

void paint(Detections::PersonMask& mask, int c0, int r0, int c1, int r1) {
  for (int r = r0; r <= r1; ++r)
    for (int c = c0; c <= c1; ++c)
      mask.bytes[static_cast<std::size_t>(r * mask.width + c)] = 0xFF;
}

// Eight points around a centre, `aperture` high per unit of width.
std::vector<Point> eye(Point c, double halfWidth = 8, double aperture = 0.3, int points = 8) {
  std::vector<Point> out;
  for (int i = 0; i < points; ++i) {
    const double a = i * 2 * std::numbers::pi / points;
    out.push_back({c.x + halfWidth * std::cos(a), c.y + aperture * halfWidth * std::sin(a)});
  }
  return out;
}

// A seated person: face box 40 px wide with its lower edge at mask row 50,
// head above, a neck down to row 69 and a torso of columns 30..170 from row 70.
struct Scene {
  Detections d;

  explicit Scene(double faceX = 0.5, double faceHeight = 0.2) {
    d.size = {side, side};
    d.markRan(Request::faces);
    d.markRan(Request::landmarks);
    d.markRan(Request::person);
    d.faces.push_back({Rect{{faceX - 0.1, 0.75}, {0.2, faceHeight}}, 0.1, std::nullopt});
    d.landmarks.leftEye = eye({115, 170});
    d.landmarks.rightEye = eye({85, 170});
    d.mask.width = d.mask.height = static_cast<int>(side);
    d.mask.bytes.assign(200 * 200, 0);
    paint(d.mask, 80, 10, 120, 50);
    paint(d.mask, 90, 50, 110, 69);
  }
  Scene& torso(int c0, int c1, int top = 70) {
    paint(d.mask, c0, top, c1, 199);
    return *this;
  }
  std::optional<Measurement> read(bool light = false) {
    return reader.read(d, false, light, false).measurement;
  }
  PoseReader reader;
};

TEST(PoseReaderShoulders, CountOnlyOffsetsWhereBothSidesMeetTheBody) {
  struct Case {
    const char* what;
    int torsoLo, torsoHi;
    bool blockRight;  // something beside the head on the right, down from the face's row
    std::optional<double> leftX;
  };
  // Walk columns, in the order of the offsets: 63/136, 55/144, 48/152, 39/160.
  const Case cases[] = {
      {"symmetric torso", 30, 170, false, (63 + 55 + 48 + 39) / 4.0 + 0.5},
      {"right side reaches two offsets", 30, 150, false, (63 + 55) / 2.0 + 0.5},
      {"right side reaches one offset", 30, 140, false, std::nullopt},
      {"right side starts on the person", 30, 170, true, std::nullopt},
  };
  for (const auto& c : cases) {
    Scene scene;
    scene.torso(c.torsoLo, c.torsoHi);
    if (c.blockRight) paint(scene.d.mask, 130, 20, 199, 199);
    const auto m = scene.read();
    ASSERT_TRUE(m) << c.what;
    ASSERT_EQ(m->shoulderL.has_value(), c.leftX.has_value()) << c.what;
    if (!c.leftX) continue;
    EXPECT_NEAR(m->shoulderL->x, *c.leftX, 0.5) << c.what;
    EXPECT_DOUBLE_EQ(m->shoulderL->y, 129.5) << c.what;  // row 70, flipped
    EXPECT_GT(m->shoulderR->x, m->shoulderL->x) << c.what;
  }
}

TEST(PoseReaderShoulders, TorsoWidthIsThrownOutWhenArmsOrTheFrameEdgeWidenIt) {
  struct Case {
    const char* what;
    int torsoLo, torsoHi;
    void (*extra)(Detections::PersonMask&);
    std::optional<double> width;
  };
  const Case cases[] = {
      {"plain torso", 30, 170, nullptr, 140},
      {"forearm held out across the last rows", 30, 170,
       [](Detections::PersonMask& m) { paint(m, 5, 115, 195, 122); }, std::nullopt},
      {"torso clipped by the frame", 0, 170, nullptr, std::nullopt},
      {"torso narrower than 1.8 face widths, arms apart", 70, 130,
       [](Detections::PersonMask& m) {
         paint(m, 35, 80, 65, 199);
         paint(m, 135, 80, 165, 199);
       },
       std::nullopt},
  };
  for (const auto& c : cases) {
    Scene scene;
    scene.torso(c.torsoLo, c.torsoHi);
    if (c.extra) c.extra(scene.d.mask);
    const auto m = scene.read();
    ASSERT_TRUE(m && m->shoulderL) << c.what;
    EXPECT_EQ(m->torsoWidth, c.width) << c.what;
    if (c.width) {
      EXPECT_EQ(m->torsoY, 129.5) << c.what;
    }
  }
}

TEST(PoseReaderShoulders, WidestRowMustNotLieInTheLastEighthOfTheRuns) {
  // n runs, one per scanned row; the torso widens after `neckRows` of them.
  // The last eighth is counted on at least 24 runs.
  struct Case {
    int runs, neckRows;
    bool measured;
  };
  const Case cases[] = {{40, 34, true}, {40, 35, false}, {16, 12, true}, {16, 13, false}};
  for (const auto& c : cases) {
    const double faceHeight = (c.runs - 1 + 0.5) / (1.8 * side);
    Scene scene(0.5, faceHeight);
    paint(scene.d.mask, 90, 50, 110, 50 + c.neckRows);
    scene.torso(30, 170, 50 + c.neckRows);
    const auto m = scene.read();
    ASSERT_TRUE(m && m->shoulderL);
    EXPECT_EQ(m->torsoWidth.has_value(), c.measured) << c.runs << " runs, " << c.neckRows;
  }
}

TEST(PoseReaderShoulders, LightModeReusesTheLastShouldersOnlyWhileTheFaceStaysPut) {
  Scene scene;
  scene.torso(30, 170);
  // Frame by frame: where the face is, and whether shoulders come out. The
  // mask is there on every frame; only every third may be used.
  struct Step {
    double faceX;
    bool shoulders;
  };
  const Step steps[] = {
      {0.5, false},   // 1: no mask yet, nothing to reuse
      {0.5, false},   // 2
      {0.5, true},    // 3: mask
      {0.51, true},   // 4: within 0.02 of frame 3's face
      {0.53, false},  // 5: moved too far
      {0.53, true},   // 6: mask again
      {0.549, true},  // 7
  };
  for (std::size_t i = 0; i < std::size(steps); ++i) {
    EXPECT_EQ(scene.reader.plan(false, true, false).person, (i + 1) % 3 == 0);
    scene.d.faces[0].boundingBox.origin.x = steps[i].faceX - 0.1;
    const auto m = scene.read(true);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->shoulderL.has_value(), steps[i].shoulders) << "frame " << i + 1;
    EXPECT_EQ(m->torsoWidth.has_value(), steps[i].shoulders) << "frame " << i + 1;
  }
}

TEST(PoseReaderFace, TheWidestFaceWinsInEveryLaterStep) {
  Scene scene;
  scene.torso(30, 170);
  // A narrower face first, far to the left and with another yaw.
  scene.d.faces.insert(scene.d.faces.begin(),
                       Detections::Face{Rect{{0.0, 0.75}, {0.15, 0.2}}, -0.5, 0.2});
  EXPECT_EQ(PoseReader::widestFace(scene.d.faces), 1u);
  const auto m = scene.read();
  ASSERT_TRUE(m && m->shoulderL);
  EXPECT_DOUBLE_EQ(m->yaw, 0.1);
  EXPECT_FALSE(m->pitch);
  scene.d.faces[1].pitch = -0.2;
  EXPECT_NEAR(*scene.read()->pitch, -0.2 * 180 / std::numbers::pi, 1e-9) << "degrees";
  EXPECT_EQ(m->torsoWidth, 140);

  const std::vector<Detections::Face> tie{{Rect{{0.1, 0}, {0.2, 0.2}}, {}, {}},
                                          {Rect{{0.5, 0}, {0.2, 0.2}}, {}, {}}};
  EXPECT_EQ(PoseReader::widestFace(tie), 0u);
}

TEST(PoseReaderFace, ApertureTakesOnlyEyeRegionsThatCanBeBoxed) {
  struct Case {
    const char* what;
    int leftPoints, rightPoints;
    double leftHalfWidth, leftAperture;
    std::optional<double> aperture;
  };
  const Case cases[] = {
      {"both eyes", 8, 8, 8, 0.5, 0.4},
      {"a five-point region is skipped", 5, 8, 8, 0.5, 0.3},
      {"a box 4 pixels wide is skipped", 8, 8, 2, 0.5, 0.3},
      {"a flat box gives an aperture, its pupil none", 8, 8, 8, 0.05, (0.05 + 0.3) / 2},
      {"no eye can be boxed", 5, 5, 8, 0.5, std::nullopt},
  };
  for (const auto& c : cases) {
    Scene scene;
    auto& marks = scene.d.landmarks;
    marks.leftEye = eye({115, 170}, c.leftHalfWidth, c.leftAperture, c.leftPoints);
    marks.rightEye = eye({85, 170}, 8, 0.3, c.rightPoints);
    marks.leftPupil = {{115, 171}};
    marks.rightPupil = {{85, 170}};
    const auto m = scene.read();
    ASSERT_TRUE(m) << c.what;
    EXPECT_EQ(m->aperture.has_value(), c.aperture.has_value()) << c.what;
    if (!c.aperture) continue;
    EXPECT_NEAR(*m->aperture, *c.aperture, 1e-9) << c.what;
    // The right eye's pupil sits at 0.5; the left one's at 0.625 when its box counts.
    const bool leftCounts = c.leftPoints > 5 && c.leftHalfWidth > 2 && c.leftAperture > 0.1;
    EXPECT_NEAR(m->pupil->y, leftCounts ? (0.5 + 0.625) / 2 : 0.5, 1e-9) << c.what;
  }
}

TEST(PoseReaderFace, NoMeasurementWithoutAFaceEyesOrWorkingDetectors) {
  void (*spoilers[])(Detections&) = {
      [](Detections& d) { d.markRan(Request::faces, true); },
      [](Detections& d) { d.markRan(Request::landmarks, true); },
      [](Detections& d) { d.landmarks.rightEye.clear(); },
      [](Detections& d) { d.faces.clear(); },
  };
  for (auto spoil : spoilers) {
    Scene scene;
    spoil(scene.d);
    EXPECT_FALSE(scene.read());
  }
}

void expectAt(std::optional<Point> p, Point expected, const char* what = "") {
  ASSERT_TRUE(p) << what;
  EXPECT_NEAR(p->x, expected.x, 1e-9) << what;
  EXPECT_NEAR(p->y, expected.y, 1e-9) << what;
}

Detections::BodyPose body(std::initializer_list<std::pair<BodyJoint, Point>> joints,
                          float confidence = 0.9f) {
  Detections::BodyPose b;
  for (auto [joint, p] : joints)
    b[joint] = Detections::Joint{{p.x / side, p.y / side}, confidence};
  return b;
}

Detections bodyOnly(Detections::BodyPose b) {
  Detections d;
  d.size = {side, side};
  d.markRan(Request::faces);
  d.markRan(Request::body);
  d.markRan(Request::hands);
  d.bodies.push_back(b);
  return d;
}

TEST(PoseReaderStandIn, TheBodyStandsInForAMissingFaceOnlyWithTheArmsAsked) {
  // The person's right eye is on the image's left.
  auto standing = bodyOnly(body({{BodyJoint::rightEye, {90, 150}},
                                 {BodyJoint::leftEye, {110, 152}},
                                 {BodyJoint::nose, {100, 140}},
                                 {BodyJoint::rightShoulder, {60, 100}},
                                 {BodyJoint::leftShoulder, {140, 100}}}));
  PoseReader reader;
  const auto m = reader.read(standing, true, false, false).measurement;
  ASSERT_TRUE(m);
  EXPECT_TRUE(m->fromBody);
  expectAt(m->eyeL, {90, 150});
  expectAt(m->eyeR, {110, 152});
  expectAt(m->nose, {100, 140});
  EXPECT_FALSE(m->faceRatio);
  ASSERT_TRUE(m->arms);
  expectAt(m->arms->shoulderL, {60, 100});

  EXPECT_FALSE(reader.read(standing, false, false, false).measurement) << "no arms asked";
  auto unsure =
      bodyOnly(body({{BodyJoint::rightEye, {90, 150}}, {BodyJoint::leftEye, {110, 150}}}, 0.29f));
  EXPECT_FALSE(reader.read(unsure, true, false, false).measurement) << "eyes below 0.3";
  auto close = bodyOnly(body({{BodyJoint::rightEye, {98, 150}}, {BodyJoint::leftEye, {102, 150}}}));
  EXPECT_FALSE(reader.read(close, true, false, false).measurement) << "eyes 4 px apart";
  standing.markRan(Request::faces, true);
  EXPECT_FALSE(reader.read(standing, true, false, false).measurement) << "face request failed";
}

TEST(PoseReaderArms, WristsStayOnTheirImageSidesAndFollowALiftedArm) {
  Scene scene;
  scene.d.markRan(Request::body);
  scene.d.markRan(Request::hands);
  auto pose = body({{BodyJoint::rightShoulder, {60, 100}},
                    {BodyJoint::leftShoulder, {140, 100}},
                    {BodyJoint::rightWrist, {50, 40}},
                    {BodyJoint::leftElbow, {150, 60}}});
  pose[BodyJoint::rightElbow] = Detections::Joint{{55.0 / side, 70.0 / side}, 0.15f};
  // The person's left wrist has crossed over to the image's left.
  pose[BodyJoint::leftWrist] = Detections::Joint{{30.0 / side, 60.0 / side}, 0.8f};
  scene.d.bodies = {body({{BodyJoint::rightShoulder, {60, 100}}}, 0.3f), pose};
  PoseReader reader;
  auto arms = reader.read(scene.d, true, false, false).measurement->arms;
  ASSERT_TRUE(arms);
  EXPECT_EQ(arms->elbowL, std::nullopt) << "a joint under 0.2 is absent";
  expectAt(arms->elbowR, {150, 60});
  expectAt(arms->wristL, {30, 60}, "the crossed wrist");
  expectAt(arms->wristR, {50, 40});

  // A hand's wrist is preferred on its side; a nearby wrist is smoothed
  // with the last one, a lifted arm's far-away wrist taken as it is.
  Detections::HandPose hand;
  hand[Detections::HandJoint::wrist] = Detections::Joint{{60.0 / side, 64.0 / side}, 0.5f};
  scene.d.hands = {hand};
  arms = reader.read(scene.d, true, false, false).measurement->arms;
  expectAt(arms->wristL, {45, 62}, "smoothed");
  scene.d.hands[0][Detections::HandJoint::wrist]->location = {60.0 / side, 180.0 / side};
  arms = reader.read(scene.d, true, false, false).measurement->arms;
  expectAt(arms->wristL, {60, 180}, "followed");
}

TEST(PoseReaderSide, HeadAndTorsoFromTheBodyAndTheMask) {
  Scene scene;
  scene.torso(30, 170);
  scene.d.markRan(Request::body);
  scene.d.markRan(Request::hands);
  const auto read = [&](Detections::BodyPose pose) {
    scene.d.bodies = {pose};
    PoseReader reader;
    return reader.read(scene.d, true, false, false).side;
  };
  // Ears give the head and its width; the torso row lies 1.6 head widths lower.
  auto side = read(body({{BodyJoint::rightEar, {85, 170}}, {BodyJoint::leftEar, {115, 170}}}));
  ASSERT_TRUE(side && side->torso);
  EXPECT_DOUBLE_EQ(side->headWidth, 51);
  EXPECT_EQ(side->torso->lo, 30.5);
  EXPECT_EQ(side->torso->hi, 170.5);
  EXPECT_FALSE(side->torso->clipped);
  EXPECT_EQ(side->band->loY, side->torso->y);
  // With only the nose, the head's row of the mask gives the width.
  side = read(body({{BodyJoint::nose, {100, 160}}}));
  ASSERT_TRUE(side);
  EXPECT_EQ(side->headWidth, 40);
  EXPECT_EQ(side->confL, 0);
  // Nothing to place a head on: no side view.
  EXPECT_FALSE(read(body({{BodyJoint::rightShoulder, {60, 100}}})));
  // A torso reaching the frame's side is clipped, which says: facing the camera.
  paint(scene.d.mask, 0, 70, 30, 199);
  side = read(body({{BodyJoint::rightEar, {85, 170}}, {BodyJoint::leftEar, {115, 170}}}));
  EXPECT_TRUE(side->torso->clipped);
  EXPECT_EQ(side->sideways, false);
}

TEST(PoseReaderPhone, ScoreAndRegion) {
  using C = Detections::Classification;
  EXPECT_FLOAT_EQ(PoseReader::phoneScore({C{"consumer_electronics", 0.9f}, C{"laptop", 0.2f},
                                          C{"computer", 0.3f}, C{"pen", 0.2f}}),
                  0.5f);
  EXPECT_EQ(PoseReader::phoneScore({C{"consumer_electronics", 0.2f}, C{"pen", 0.6f}}), 0);

  Detections d;
  d.size = {1280, 720};
  Detections::HandPose hand;
  hand[Detections::HandJoint::indexTip] = Detections::Joint{{0.5, 0.5}, 0.9f};
  hand[Detections::HandJoint::wrist] = Detections::Joint{{0.9, 0.9}, 0.2f};  // too unsure
  d.hands = {hand};
  const auto region = PoseReader::phoneRegion(d);
  ASSERT_TRUE(region);
  EXPECT_NEAR(region->size.height, 0.28, 1e-12);
  EXPECT_NEAR(region->size.width * 1280, region->size.height * 720, 1e-9) << "square in pixels";
  EXPECT_NEAR(region->midX(), 0.5, 1e-12);
  // At the side of a wide frame, what is left after cutting to it is too thin.
  d.size = {2000, 500};
  hand[Detections::HandJoint::indexTip]->location = {0.999, 0.5};
  d.hands = {hand};
  EXPECT_FALSE(PoseReader::phoneRegion(d));
}

TEST(PoseReaderPhone, ScoredOnEvenFramesWithAMeasurementAndAHand) {
  Scene scene;
  scene.d.markRan(Request::body);
  scene.d.markRan(Request::scene);
  scene.d.scene = {{"consumer_electronics", 0.7f}};
  scene.d.bodies = {body({{BodyJoint::leftWrist, {100, 60}}})};
  PoseReader reader;
  std::vector<bool> scored;
  for (int frame = 1; frame <= 4; ++frame) {
    EXPECT_EQ(reader.plan(true, false, true).scene, frame % 2 == 0);
    scored.push_back(reader.read(scene.d, true, false, true).measurement->phone.has_value());
  }
  EXPECT_EQ(scored, (std::vector<bool>{false, true, false, true}));
}

}  // namespace
}  // namespace sodam
