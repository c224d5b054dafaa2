#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/mate_state.h"
#include "focus/watch_habit.h"
#include "platform/power.h"
#include "posture/capture.h"
#include "posture/live_feed.h"
#include "posture/measurement.h"
#include "posture/monitor.h"
#include "support/clock.h"
#include "support/signal.h"
#include "support/weak_call.h"
#include "worklife/work_life.h"

namespace sodam {

// Watches a user who studies with the laptop set back: a phone in the hands,
// dozing, a chin on a hand, a hand at the mouth, an empty seat, a sunken
// posture. It samples the camera slowly in the light reading mode, turns each
// measurement into a small frame, keeps twelve seconds of them and judges
// shares over short windows, so that no single frame decides anything. Each
// habit found is reported at most once in 90 seconds. Main thread only.
class WatchEngine {
 public:
  enum class Phase { off, setup, calibrating, running };

  // What the camera must see: the face, the shoulders and the hands on the
  // desk, with a hint for the first thing missing.
  struct Framing {
    bool face = false;
    bool shoulders = false;
    bool hands = false;
    std::optional<std::string> hint;
    bool ok() const { return face && shoulders && hands; }
    bool operator==(const Framing&) const = default;
  };

  // One camera sample. Heights are shares of the frame's height, the hand
  // tests are in units of the face's length.
  struct Frame {
    Date at;
    bool face = false;     // a true face, not the body's estimate
    bool present = false;  // somebody is in the picture
    double eyeY = 0;
    double ipd = 0;  // eye distance in image pixels
    std::optional<double> aperture;
    bool chinRest = false;    // a wrist under the chin
    bool mouth = false;       // a wrist at the mouth
    bool phoneHands = false;  // both hands together, low, with the gaze down
    std::optional<float> phone;
  };

  // The upright posture taken at calibration.
  struct Reference {
    double eyeY = 0;
    double ipd = 0;
  };

  struct Ports {
    LiveFeed& feed;
    Capture& capture;
    Monitor& monitor;
    const Power& power;
    WorkLife& work;
    const Clock& clock;
  };

  // The monitor's hold while the watcher has the camera.
  static constexpr std::string_view hold = "watch";
  static constexpr double keptSeconds = 12;
  static constexpr double calibrationSeconds = 10;
  static constexpr double habitPauseSeconds = 90;
  static constexpr double awayStateSeconds = 15;
  static constexpr double awayReportSeconds = 60;
  static constexpr double batteryIntervalSeconds = 1.0;
  static constexpr double mainsIntervalSeconds = 0.5;
  // The least number of eye apertures for an open-eye value.
  static constexpr std::size_t openEyeLeastCount = 20;

  static constexpr const char* faceHint =
      "얼굴이 보이게 화면을 조금 올리거나 화면 앞에 앉아 주세요";
  static constexpr const char* shouldersHint = "어깨까지 보이게 조금 뒤로 앉아 주세요";
  static constexpr const char* handsHint = "손과 책상이 보이게 화면을 조금 더 내려 주세요";
  static constexpr const char* awayNote = "자리를 비웠어요";
  static constexpr const char* headDownNote = "고개를 푹 숙이고 있어요";
  static constexpr const char* faceGoneNote = "얼굴이 잘 안 보여요";

  explicit WatchEngine(Ports ports);
  // Gives the camera and the monitor back if they are still held.
  ~WatchEngine();
  WatchEngine(const WatchEngine&) = delete;
  WatchEngine& operator=(const WatchEngine&) = delete;

  // Called with each habit found, at most once in 90 seconds per habit.
  std::function<void(WatchHabit)> onHabit;
  // The phase, the framing, the state, the note or the pause changed.
  ChangeSignal onChange;

  bool active() const { return phase_ != Phase::off; }
  Phase phase() const { return phase_; }
  // 0 to 1 while calibrating.
  double calibrationProgress() const { return progress_; }
  const Framing& framing() const { return framing_; }
  MateState state() const { return state_; }
  const std::optional<std::string>& note() const { return note_; }
  bool paused() const { return paused_; }
  void setPaused(bool paused);
  const std::vector<WatchHabit>& habits() const { return habits_; }
  bool watchesPosture() const { return posture_; }
  const std::optional<Reference>& reference() const { return reference_; }
  // The samples of the last twelve seconds, oldest first.
  const std::vector<Frame>& frames() const { return frames_; }
  bool cameraOn() const { return cameraOn_; }

  // The camera comes on so that the user can place the machine.
  void beginSetup();
  // Takes the reference over ten seconds, then runs.
  void calibrate(std::vector<WatchHabit> habits, bool posture);
  // From off: calibrates when there is no reference yet, else runs at once.
  void start(std::vector<WatchHabit> habits, bool posture);
  // Changes what is watched without stopping.
  void update(std::vector<WatchHabit> habits, bool posture);
  // Off: the camera stops, the hold goes, the frames are forgotten. The
  // reference and the eye apertures stay for the run.
  void stop();

  // One camera result; nothing for a frame without a person.
  void take(const std::optional<Measurement>& m);
  void judge(Date now);
  // The user's open-eye aperture; nothing with fewer than 20 values.
  std::optional<double> openEye() const;

 private:
  struct Findings;

  void startCamera();
  void stopCamera();
  double interval() const;
  Frame frameOf(const std::optional<Measurement>& m);
  void readHands(const Measurement& m, Frame& frame) const;
  void judgeFraming(const std::optional<Measurement>& m, const Frame& frame);
  void calibrating(const Frame& frame);
  void finishCalibration();
  Findings find(Date now);
  void judgePosture(Findings& found, Date now);
  // The median of a field over the present frames of the main window.
  std::optional<double> presentMedian(Date now, double Frame::*field) const;
  void flag(WatchHabit habit, Date now);
  void tellWorkLife(const Frame& frame);
  void setState(MateState state, std::optional<std::string> note);
  void changed() { onChange.notify(); }

  Ports ports_;
  LifeToken<WatchEngine> self_ = lifeToken(this);

  Phase phase_ = Phase::off;
  double progress_ = 0;
  Framing framing_;
  MateState state_ = MateState::focus;
  std::optional<std::string> note_;
  bool paused_ = false;
  std::vector<WatchHabit> habits_;
  bool posture_ = false;
  // Plain lists trimmed at the front, so that once grown a sample allocates
  // nothing.
  std::vector<Frame> frames_;
  std::optional<Reference> reference_;
  std::vector<Frame> calib_;
  Date calibStart_;
  // When each habit was last reported.
  std::array<Date, WatchHabit::count> said_;
  // The last 600 apertures, written round in a circle from `eyesNext_`.
  std::vector<double> eyes_;
  std::size_t eyesNext_ = 0;
  std::vector<bool> handsSeen_;
  std::optional<Date> awaySince_;
  bool awayFlagged_ = false;
  bool cameraOn_ = false;
  double intervalInUse_ = 0;
  // Reused for medians and the open-eye value, so a frame allocates nothing.
  mutable std::vector<double> scratch_;
  mutable std::optional<double> openEye_;
  mutable bool openEyeKnown_ = false;
};

}  // namespace sodam
