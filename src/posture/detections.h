#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/geometry.h"

namespace sodam {

// What one frame's detectors gave, as plain values. The platform fills it on
// the frame queue (reusing one value from frame to frame, so the lists keep
// their capacity) and the pose reader turns it into measurements.
struct Detections {
  enum class Request : std::size_t { faces, landmarks, person, body, hands, scene };
  static constexpr std::size_t requestCount = 6;

  struct RequestState {
    bool ran = false;
    bool failed = false;
  };

  struct Face {
    Rect boundingBox;             // normalised, origin lower left
    std::optional<double> yaw;    // radians
    std::optional<double> pitch;  // radians
  };

  // Landmark regions of one face, in image pixels. An empty list is a region
  // the detector did not give.
  struct FaceLandmarks {
    std::vector<Point> leftEye, rightEye, leftPupil, rightPupil, nose, faceContour;
    void clear();
  };

  struct Joint {
    Point location;  // normalised, origin lower left
    float confidence = 0;
  };

  // Body joints by the detector's names; left and right are the person's own.
  enum class BodyJoint : std::size_t {
    nose,
    leftEye,
    rightEye,
    leftEar,
    rightEar,
    neck,
    leftShoulder,
    rightShoulder,
    leftElbow,
    rightElbow,
    leftWrist,
    rightWrist,
    leftHip,
    rightHip,
    root,
    leftKnee,
    rightKnee,
    leftAnkle,
    rightAnkle,
    count
  };
  struct BodyPose {
    std::array<std::optional<Joint>, static_cast<std::size_t>(BodyJoint::count)> joints;
    const std::optional<Joint>& operator[](BodyJoint j) const {
      return joints[static_cast<std::size_t>(j)];
    }
    std::optional<Joint>& operator[](BodyJoint j) { return joints[static_cast<std::size_t>(j)]; }
  };

  enum class HandJoint : std::size_t {
    wrist,
    thumbCMC,
    thumbMP,
    thumbIP,
    thumbTip,
    indexMCP,
    indexPIP,
    indexDIP,
    indexTip,
    middleMCP,
    middlePIP,
    middleDIP,
    middleTip,
    ringMCP,
    ringPIP,
    ringDIP,
    ringTip,
    littleMCP,
    littlePIP,
    littleDIP,
    littleTip,
    count
  };
  struct HandPose {
    std::array<std::optional<Joint>, static_cast<std::size_t>(HandJoint::count)> joints;
    const std::optional<Joint>& operator[](HandJoint j) const {
      return joints[static_cast<std::size_t>(j)];
    }
    std::optional<Joint>& operator[](HandJoint j) { return joints[static_cast<std::size_t>(j)]; }
  };

  // One byte a pixel, top row first; a byte with its high bit set is person.
  // Its resolution may differ from the frame's.
  struct PersonMask {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;

    // A horizontal stretch of person pixels, both ends inclusive.
    struct Run {
      int lo = 0;
      int hi = 0;
    };

    bool empty() const { return width <= 0 || height <= 0; }
    bool contains(int column, int row) const {
      return column >= 0 && column < width && row >= 0 && row < height;
    }
    bool isPerson(int column, int row) const {
      return (bytes[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                    static_cast<std::size_t>(column)] &
              0x80) != 0;
    }
    // The run of person pixels through this pixel; nothing when it isn't person.
    std::optional<Run> runThrough(int column, int row) const;
    // The person pixel on the row nearest to the column, looking at most
    // `reach` columns to either side; nothing when there is none.
    std::optional<int> nearestPerson(int column, int row, int reach) const;
    void clear();
  };

  struct Classification {
    std::string identifier;
    float confidence = 0;
  };

  Size size;  // the frame in pixels
  std::array<RequestState, requestCount> requests{};
  std::vector<Face> faces;
  // Landmarks of the one face they were asked for (the widest).
  FaceLandmarks landmarks;
  PersonMask mask;
  std::vector<BodyPose> bodies;
  std::vector<HandPose> hands;
  std::vector<Classification> scene;

  RequestState& state(Request r) { return requests[static_cast<std::size_t>(r)]; }
  const RequestState& state(Request r) const { return requests[static_cast<std::size_t>(r)]; }
  // The request ran and did not fail.
  bool succeeded(Request r) const { return state(r).ran && !state(r).failed; }
  void markRan(Request r, bool failed = false) { state(r) = RequestState{true, failed}; }

  // Empties every result and flag but keeps the lists' storage.
  void clear();
};

}  // namespace sodam
