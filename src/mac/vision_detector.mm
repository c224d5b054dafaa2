#include "mac/vision_detector.h"

#import <Vision/Vision.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "mac/mac_camera.h"

namespace sodam {

namespace {

using Request = Detections::Request;

constexpr auto bodyJointCount = static_cast<std::size_t>(Detections::BodyJoint::count);
constexpr auto handJointCount = static_cast<std::size_t>(Detections::HandJoint::count);
using BodyJointNames = std::array<VNHumanBodyPoseObservationJointName, bodyJointCount>;
using HandJointNames = std::array<VNHumanHandPoseObservationJointName, handJointCount>;

// In the order of Detections::BodyJoint; left and right are the person's own
// on both sides.
BodyJointNames bodyJointNames() {
  VNHumanBodyPoseObservationJointName const names[] = {
      VNHumanBodyPoseObservationJointNameNose,
      VNHumanBodyPoseObservationJointNameLeftEye,
      VNHumanBodyPoseObservationJointNameRightEye,
      VNHumanBodyPoseObservationJointNameLeftEar,
      VNHumanBodyPoseObservationJointNameRightEar,
      VNHumanBodyPoseObservationJointNameNeck,
      VNHumanBodyPoseObservationJointNameLeftShoulder,
      VNHumanBodyPoseObservationJointNameRightShoulder,
      VNHumanBodyPoseObservationJointNameLeftElbow,
      VNHumanBodyPoseObservationJointNameRightElbow,
      VNHumanBodyPoseObservationJointNameLeftWrist,
      VNHumanBodyPoseObservationJointNameRightWrist,
      VNHumanBodyPoseObservationJointNameLeftHip,
      VNHumanBodyPoseObservationJointNameRightHip,
      VNHumanBodyPoseObservationJointNameRoot,
      VNHumanBodyPoseObservationJointNameLeftKnee,
      VNHumanBodyPoseObservationJointNameRightKnee,
      VNHumanBodyPoseObservationJointNameLeftAnkle,
      VNHumanBodyPoseObservationJointNameRightAnkle,
  };
  static_assert(std::size(names) == bodyJointCount);
  BodyJointNames result;
  std::copy(std::begin(names), std::end(names), result.begin());
  return result;
}

// In the order of Detections::HandJoint.
HandJointNames handJointNames() {
  VNHumanHandPoseObservationJointName const names[] = {
      VNHumanHandPoseObservationJointNameWrist,     VNHumanHandPoseObservationJointNameThumbCMC,
      VNHumanHandPoseObservationJointNameThumbMP,   VNHumanHandPoseObservationJointNameThumbIP,
      VNHumanHandPoseObservationJointNameThumbTip,  VNHumanHandPoseObservationJointNameIndexMCP,
      VNHumanHandPoseObservationJointNameIndexPIP,  VNHumanHandPoseObservationJointNameIndexDIP,
      VNHumanHandPoseObservationJointNameIndexTip,  VNHumanHandPoseObservationJointNameMiddleMCP,
      VNHumanHandPoseObservationJointNameMiddlePIP, VNHumanHandPoseObservationJointNameMiddleDIP,
      VNHumanHandPoseObservationJointNameMiddleTip, VNHumanHandPoseObservationJointNameRingMCP,
      VNHumanHandPoseObservationJointNameRingPIP,   VNHumanHandPoseObservationJointNameRingDIP,
      VNHumanHandPoseObservationJointNameRingTip,   VNHumanHandPoseObservationJointNameLittleMCP,
      VNHumanHandPoseObservationJointNameLittlePIP, VNHumanHandPoseObservationJointNameLittleDIP,
      VNHumanHandPoseObservationJointNameLittleTip,
  };
  static_assert(std::size(names) == handJointCount);
  HandJointNames result;
  std::copy(std::begin(names), std::end(names), result.begin());
  return result;
}

bool perform(VNImageRequestHandler* handler, NSArray<VNRequest*>* requests) {
  return [handler performRequests:requests error:nil];
}

Rect rectOf(CGRect box) {
  return Rect{{box.origin.x, box.origin.y}, {box.size.width, box.size.height}};
}

Detections::Face faceOf(VNFaceObservation* observation) {
  Detections::Face face;
  face.boundingBox = rectOf(observation.boundingBox);
  if (NSNumber* yaw = observation.yaw) face.yaw = yaw.doubleValue;
  if (NSNumber* pitch = observation.pitch) face.pitch = pitch.doubleValue;
  return face;
}

// The detector reports a joint it did not find with no confidence at all; the
// core wants such a joint absent, not at the origin.
std::optional<Detections::Joint> jointOf(VNRecognizedPoint* point) {
  if (!point || point.confidence <= 0) return std::nullopt;
  return Detections::Joint{{point.location.x, point.location.y}, point.confidence};
}

template <class Observation, class Pose, class Names>
void addPoses(NSArray* observations, const Names& names, std::vector<Pose>& out) {
  for (Observation* observation in observations) {
    Pose& pose = out.emplace_back();
    for (std::size_t i = 0; i < names.size(); ++i)
      pose.joints[i] = jointOf([observation recognizedPointForJointName:names[i] error:nil]);
  }
}

void appendRegion(VNFaceLandmarkRegion2D* region, CGSize imageSize, std::vector<Point>& out) {
  if (!region) return;
  const CGPoint* points = [region pointsInImageOfSize:imageSize];
  if (!points) return;
  for (NSUInteger i = 0; i < region.pointCount; ++i)
    out.push_back({points[i].x, points[i].y});
}

void addLandmarks(VNFaceLandmarks2D* marks, Size size, Detections::FaceLandmarks& out) {
  if (!marks) return;
  const CGSize imageSize = CGSizeMake(size.width, size.height);
  appendRegion(marks.leftEye, imageSize, out.leftEye);
  appendRegion(marks.rightEye, imageSize, out.rightEye);
  appendRegion(marks.leftPupil, imageSize, out.leftPupil);
  appendRegion(marks.rightPupil, imageSize, out.rightPupil);
  appendRegion(marks.nose, imageSize, out.nose);
  appendRegion(marks.faceContour, imageSize, out.faceContour);
}

// The mask's bytes are the detector's person confidence from 0 to 255, rows
// top first, so a byte's high bit already says "person" at even odds.
void copyMask(CVPixelBufferRef buffer, Detections::PersonMask& mask) {
  if (!buffer || CVPixelBufferGetPixelFormatType(buffer) != kCVPixelFormatType_OneComponent8)
    return;
  if (CVPixelBufferLockBaseAddress(buffer, kCVPixelBufferLock_ReadOnly) != kCVReturnSuccess) return;
  const auto* base = static_cast<const std::uint8_t*>(CVPixelBufferGetBaseAddress(buffer));
  if (base) {
    const std::size_t width = CVPixelBufferGetWidth(buffer);
    const std::size_t height = CVPixelBufferGetHeight(buffer);
    const std::size_t stride = CVPixelBufferGetBytesPerRow(buffer);
    mask.width = static_cast<int>(width);
    mask.height = static_cast<int>(height);
    mask.bytes.resize(width * height);
    for (std::size_t row = 0; row < height; ++row)
      std::memcpy(mask.bytes.data() + row * width, base + row * stride, width);
  }
  CVPixelBufferUnlockBaseAddress(buffer, kCVPixelBufferLock_ReadOnly);
}

std::string textOf(NSString* text) {
  const char* utf8 = text.UTF8String;
  return utf8 ? std::string(utf8) : std::string();
}

// Every request at a fixed revision, and the landmarks in a fixed
// constellation: a learned posture holds numbers measured by these, and a
// newer system's default must not quietly measure differently.
template <class Request>
Request* pinned(NSUInteger revision) {
  Request* request = [[Request alloc] init];
  request.revision = revision;
  return request;
}

VNDetectFaceLandmarksRequest* pinnedLandmarks() {
  auto* request = pinned<VNDetectFaceLandmarksRequest>(VNDetectFaceLandmarksRequestRevision3);
  request.constellation = VNRequestFaceLandmarksConstellation76Points;
  return request;
}

VNGeneratePersonSegmentationRequest* pinnedPerson() {
  auto* request =
      pinned<VNGeneratePersonSegmentationRequest>(VNGeneratePersonSegmentationRequestRevision1);
  request.qualityLevel = VNGeneratePersonSegmentationRequestQualityLevelBalanced;
  request.outputPixelFormat = kCVPixelFormatType_OneComponent8;
  return request;
}

}  // namespace

struct VisionDetector::Requests {
  // Revision 3 is the first to give the face's pitch.
  VNDetectFaceRectanglesRequest* faces =
      pinned<VNDetectFaceRectanglesRequest>(VNDetectFaceRectanglesRequestRevision3);
  VNDetectFaceLandmarksRequest* landmarks = pinnedLandmarks();
  VNGeneratePersonSegmentationRequest* person = pinnedPerson();
  VNDetectHumanBodyPoseRequest* body =
      pinned<VNDetectHumanBodyPoseRequest>(VNDetectHumanBodyPoseRequestRevision1);
  VNDetectHumanHandPoseRequest* hands =
      pinned<VNDetectHumanHandPoseRequest>(VNDetectHumanHandPoseRequestRevision1);
  VNClassifyImageRequest* scene = pinned<VNClassifyImageRequest>(VNClassifyImageRequestRevision1);

  // The lists handed to the handler, made once like the requests.
  NSArray<VNRequest*>* bodyAndHandsCall = @[ body, hands ];
  NSArray<VNRequest*>* facesCall = @[ faces ];
  NSArray<VNRequest*>* landmarksCall = @[ landmarks ];
  NSArray<VNRequest*>* personCall = @[ person ];
  NSArray<VNRequest*>* sceneCall = @[ scene ];

  BodyJointNames bodyJoints = bodyJointNames();
  HandJointNames handJoints = handJointNames();

  // The segmentation smooths its mask over the frames it has seen; frames of
  // a run minutes after the last would start from that old mask.
  void freshPerson() {
    person = pinnedPerson();
    personCall = @[ person ];
  }

  void runBodyAndHands(VNImageRequestHandler* handler, Detections& out) {
    const bool ran = perform(handler, bodyAndHandsCall);
    out.markRan(Request::body, !ran);
    out.markRan(Request::hands, !ran);
    if (!ran) return;
    addPoses<VNHumanBodyPoseObservation>(body.results, bodyJoints, out.bodies);
    addPoses<VNHumanHandPoseObservation>(hands.results, handJoints, out.hands);
  }

  void runFaces(VNImageRequestHandler* handler, Detections& out) {
    const bool ran = perform(handler, facesCall);
    out.markRan(Request::faces, !ran);
    if (!ran) return;
    for (VNFaceObservation* face in faces.results)
      out.faces.push_back(faceOf(face));
  }

  void runPerson(VNImageRequestHandler* handler, Detections& out) {
    const bool ran = perform(handler, personCall);
    out.markRan(Request::person, !ran);
    if (ran) copyMask(person.results.firstObject.pixelBuffer, out.mask);
  }

  // On the widest face alone, which the faces' results hold at the same index
  // as the detections.
  void runLandmarks(VNImageRequestHandler* handler, Detections& out) {
    if (!out.succeeded(Request::faces)) return;
    const auto widest = PoseReader::widestFace(out.faces);
    NSArray<VNFaceObservation*>* found = faces.results;
    if (!widest || *widest >= found.count) return;
    landmarks.inputFaceObservations = @[ found[*widest] ];
    const bool ran = perform(handler, landmarksCall);
    landmarks.inputFaceObservations = nil;
    out.markRan(Request::landmarks, !ran);
    if (ran) addLandmarks(landmarks.results.firstObject.landmarks, out.size, out.landmarks);
  }

  void runScene(VNImageRequestHandler* handler, Rect region, Detections& out) {
    scene.regionOfInterest =
        CGRectMake(region.origin.x, region.origin.y, region.size.width, region.size.height);
    const bool ran = perform(handler, sceneCall);
    out.markRan(Request::scene, !ran);
    if (!ran) return;
    for (VNClassificationObservation* observation in scene.results)
      out.scene.push_back({textOf(observation.identifier), observation.confidence});
  }
};

VisionDetector::VisionDetector() : requests_(std::make_unique<Requests>()) {}

VisionDetector::~VisionDetector() = default;

void VisionDetector::beginSequence() {
  requests_->freshPerson();
}

// Each step sees what the earlier ones found: the mask waits for the faces,
// the landmarks for the widest face, the scene for hands and a readable face.
void VisionDetector::detect(const CameraFrame& frame, const FramePlan& plan, Detections& out) {
  CVPixelBufferRef buffer = pixelBuffer(frame);
  if (!buffer) return;
  out.size = frame.size;
  Requests& requests = *requests_;
  @autoreleasepool {
    VNImageRequestHandler* handler =
        [[VNImageRequestHandler alloc] initWithCVPixelBuffer:buffer
                                                 orientation:kCGImagePropertyOrientationUp
                                                     options:@{}];
    if (plan.bodyAndHands) requests.runBodyAndHands(handler, out);
    if (plan.faces) requests.runFaces(handler, out);
    if (plan.personWanted(out)) requests.runPerson(handler, out);
    if (plan.landmarks) requests.runLandmarks(handler, out);
    if (auto region = plan.sceneRegion(out)) requests.runScene(handler, *region, out);
  }
}

}  // namespace sodam
