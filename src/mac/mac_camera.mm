#include "mac/mac_camera.h"

#import <AVFoundation/AVFoundation.h>
#include <CoreMedia/CoreMedia.h>

#include <mutex>
#include <utility>

namespace sodam {

namespace {

constexpr int frameWidth = 1280;
constexpr int frameHeight = 720;
constexpr int maxFramesPerSecond = 15;

// Capture timestamps share the host clock with CACurrentMediaTime on this
// platform, so the rare buffer without one still paces on the same clock.
double presentationSeconds(CMSampleBufferRef buffer) {
  const CMTime time = CMSampleBufferGetPresentationTimeStamp(buffer);
  return CMTIME_IS_NUMERIC(time) ? CMTimeGetSeconds(time) : CACurrentMediaTime();
}

CameraFrame frameOf(CMSampleBufferRef buffer) {
  CameraFrame frame;
  frame.mediaTime = presentationSeconds(buffer);
  CVImageBufferRef image = CMSampleBufferGetImageBuffer(buffer);
  if (!image) return frame;
  frame.size = {static_cast<double>(CVPixelBufferGetWidth(image)),
                static_cast<double>(CVPixelBufferGetHeight(image))};
  CFRetain(buffer);
  frame.image = std::shared_ptr<const void>(static_cast<const void*>(buffer),
                                            [](const void* held) { CFRelease(held); });
  return frame;
}

}  // namespace

}  // namespace sodam

// Hands each sample buffer to the current sink. The sink is swapped and
// called under one lock, so once it is cleared no call is still under way.
@interface SJCameraFrameDelegate : NSObject <AVCaptureVideoDataOutputSampleBufferDelegate>
- (void)setSink:(sodam::CameraDevice::Sink)sink;
@end

@implementation SJCameraFrameDelegate {
  std::mutex _lock;
  sodam::CameraDevice::Sink _sink;
}

- (void)setSink:(sodam::CameraDevice::Sink)sink {
  std::lock_guard guard(_lock);
  std::swap(_sink, sink);
}

- (void)captureOutput:(AVCaptureOutput*)output
    didOutputSampleBuffer:(CMSampleBufferRef)sampleBuffer
           fromConnection:(AVCaptureConnection*)connection {
  sodam::CameraFrame frame = sodam::frameOf(sampleBuffer);
  std::lock_guard guard(_lock);
  if (_sink) _sink(std::move(frame));
}

@end

namespace sodam {

namespace {

// A camera that can give frames now: the built-in one is listed but
// suspended while the lid is closed, and a camera may be going away.
bool usable(AVCaptureDevice* device) {
  return device && device.connected && !device.suspended;
}

NSArray<AVCaptureDevice*>* camerasOf(NSArray<AVCaptureDeviceType>* types) {
  return [AVCaptureDeviceDiscoverySession
             discoverySessionWithDeviceTypes:types
                                   mediaType:AVMediaTypeVideo
                                    position:AVCaptureDevicePositionUnspecified]
      .devices;
}

// The cameras that are neither built in nor the default: plugged in, or a
// phone nearby. The older name of the external type is the only one there is
// before macOS 14.
NSArray<AVCaptureDeviceType>* otherCameraTypes() {
  if (@available(macOS 14.0, *))
    return @[ AVCaptureDeviceTypeExternal, AVCaptureDeviceTypeContinuityCamera ];
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
  return @[ AVCaptureDeviceTypeExternalUnknown ];
#pragma clang diagnostic pop
}

AVCaptureDevice* firstUsable(NSArray<AVCaptureDevice*>* devices) {
  for (AVCaptureDevice* device in devices)
    if (usable(device)) return device;
  return nil;
}

// The built-in camera, then the system's default camera, then any other.
AVCaptureDevice* findCamera() {
  if (AVCaptureDevice* builtIn =
          firstUsable(camerasOf(@[ AVCaptureDeviceTypeBuiltInWideAngleCamera ])))
    return builtIn;
  AVCaptureDevice* standard = [AVCaptureDevice defaultDeviceWithMediaType:AVMediaTypeVideo];
  if (usable(standard)) return standard;
  return firstUsable(camerasOf(otherCameraTypes()));
}

// Center Stage follows the user around the picture, which would carry the
// learned posture along with them: the application takes the control from
// Control Center and keeps the framing still.
void keepFramingStill() {
  AVCaptureDevice.centerStageControlMode = AVCaptureCenterStageControlModeApp;
  AVCaptureDevice.centerStageEnabled = NO;
}

NSDictionary<NSString*, id>* frameSettings() {
  return @{
    (__bridge NSString*)
    kCVPixelBufferPixelFormatTypeKey : @(kCVPixelFormatType_420YpCbCr8BiPlanarFullRange),
    (__bridge NSString*)kCVPixelBufferWidthKey : @(frameWidth),
    (__bridge NSString*)kCVPixelBufferHeightKey : @(frameHeight),
  };
}

// The user sees themselves in a preview layer, which mirrors on its own; the
// frames that are measured keep the camera's view.
void keepUnmirrored(AVCaptureConnection* connection) {
  if (!connection.isVideoMirroringSupported) return;
  connection.automaticallyAdjustsVideoMirroring = NO;
  connection.videoMirrored = NO;
}

bool formatAllows(AVCaptureDeviceFormat* format, CMTime frameDuration) {
  for (AVFrameRateRange* range in format.videoSupportedFrameRateRanges) {
    if (CMTimeCompare(range.minFrameDuration, frameDuration) <= 0 &&
        CMTimeCompare(frameDuration, range.maxFrameDuration) <= 0)
      return true;
  }
  return false;
}

// The hardware need not make more frames than the fastest pacing keeps. Both
// durations change together, inside the session's configuration: a device
// that runs at a fixed 30 has both at 1/30, and a minimum set alone above
// that maximum would be refused. A device that refuses the cap all the same
// keeps its own rate, and pacing drops the surplus.
void capFrameRate(AVCaptureDevice* device) {
  const CMTime frameDuration = CMTimeMake(1, maxFramesPerSecond);
  if (!formatAllows(device.activeFormat, frameDuration)) return;
  if (![device lockForConfiguration:nil]) return;
  @try {
    device.activeVideoMaxFrameDuration = frameDuration;
    device.activeVideoMinFrameDuration = frameDuration;
  } @catch (NSException*) {
  }
  [device unlockForConfiguration];
}

}  // namespace

struct MacCamera::Session {
  AVCaptureSession* capture = [[AVCaptureSession alloc] init];
  AVCaptureVideoDataOutput* output = [[AVCaptureVideoDataOutput alloc] init];
  SJCameraFrameDelegate* delegate = [[SJCameraFrameDelegate alloc] init];
  dispatch_queue_t sessionQueue;
  dispatch_queue_t frameQueue;
  NSArray<id>* observers = @[];

  // Set on the constructor's thread and the session queue, read on the main thread.
  mutable std::mutex deviceLock;
  AVCaptureDevice* device;

  // Session queue only.
  AVCaptureDeviceInput* input = nil;
  bool lost = false;       // unplugged or failed since it was connected
  bool wanted = false;     // from startRunning to stopRunning
  bool recovered = false;  // this run has already looked for a camera by itself
  id<NSObject> activity = nil;

  void setDevice(AVCaptureDevice* found) {
    std::lock_guard guard(deviceLock);
    device = found;
  }

  bool ready() const {
    std::lock_guard guard(deviceLock);
    return input && !lost && usable(device);
  }

  // Looks for a camera and puts it into the session in one configuration,
  // in place of the one before. False without a camera or an input.
  bool connect() {
    AVCaptureDevice* found = findCamera();
    setDevice(found);
    AVCaptureDeviceInput* made =
        found ? [AVCaptureDeviceInput deviceInputWithDevice:found error:nil] : nil;
    keepFramingStill();
    [capture beginConfiguration];
    if (input) [capture removeInput:input];
    input = made && attach(made, found) ? made : nil;
    [capture commitConfiguration];
    lost = !input;
    return input;
  }

  bool attach(AVCaptureDeviceInput* made, AVCaptureDevice* found) {
    if (![capture canAddInput:made]) return false;
    [capture addInput:made];
    if (![capture.outputs containsObject:output]) {
      output.videoSettings = frameSettings();
      output.alwaysDiscardsLateVideoFrames = YES;
      [output setSampleBufferDelegate:delegate queue:frameQueue];
      if (![capture canAddOutput:output]) {
        [capture removeInput:made];
        return false;
      }
      [capture addOutput:output];
    }
    if ([capture canSetSessionPreset:AVCaptureSessionPreset1280x720])
      capture.sessionPreset = AVCaptureSessionPreset1280x720;
    keepUnmirrored([output connectionWithMediaType:AVMediaTypeVideo]);
    capFrameRate(found);
    return true;
  }

  void run() {
    if (input && !capture.isRunning) [capture startRunning];
  }

  // The camera was unplugged, or the session failed. A run under way looks
  // for a camera once by itself; otherwise the next start does.
  void recover() {
    lost = true;
    if (!wanted || recovered) return;
    recovered = true;
    if (capture.isRunning) [capture stopRunning];
    if (connect()) run();
  }

  void holdActivity() {
    if (activity) return;
    activity = [NSProcessInfo.processInfo
        beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                          reason:@"posture check with the camera"];
  }

  void releaseActivity() {
    if (!activity) return;
    [NSProcessInfo.processInfo endActivity:activity];
    activity = nil;
  }

  // Notifications come on the thread that posts them; the session is changed
  // on its own queue only, and not at all once the camera is gone.
  static id observeLoss(NSString* name, id object, const std::shared_ptr<Session>& session) {
    std::weak_ptr<Session> weak = session;
    dispatch_queue_t queue = session->sessionQueue;
    return [NSNotificationCenter.defaultCenter
        addObserverForName:name
                    object:object
                     queue:nil
                usingBlock:^(NSNotification* note) {
                  id from = note.object;
                  dispatch_async(queue, ^{
                    auto alive = weak.lock();
                    if (!alive) return;
                    // Any camera may go; only the session's own matters.
                    if ([from isKindOfClass:AVCaptureDevice.class] && from != alive->input.device)
                      return;
                    alive->recover();
                  });
                }];
  }
};

// The device is looked for at once, so that whether another application holds
// it is known before the first start; configure looks again, as a camera may
// have come or gone since.
MacCamera::MacCamera(DispatchSerialQueue& sessionQueue, DispatchSerialQueue& frameQueue)
    : session_(std::make_shared<Session>()) {
  session_->sessionQueue = sessionQueue.native();
  session_->frameQueue = frameQueue.native();
  session_->device = findCamera();
  session_->observers = @[
    Session::observeLoss(AVCaptureDeviceWasDisconnectedNotification, nil, session_),
    Session::observeLoss(AVCaptureSessionRuntimeErrorNotification, session_->capture, session_),
  ];
}

MacCamera::~MacCamera() {
  for (id observer in session_->observers)
    [NSNotificationCenter.defaultCenter removeObserver:observer];
  [session_->delegate setSink:nullptr];
  [session_->output setSampleBufferDelegate:nil queue:nil];
  session_->releaseActivity();
}

bool MacCamera::configure() {
  return session_->connect();
}

// A camera lost since the last run, or one that was suspended then, is
// looked for again; without one the run gives no frames, and the monitor's
// watchdog tells.
void MacCamera::startRunning(Sink sink) {
  Session& session = *session_;
  session.wanted = true;
  session.recovered = false;
  session.holdActivity();
  [session.delegate setSink:std::move(sink)];
  if (session.ready() || session.connect()) session.run();
}

void MacCamera::stopRunning() {
  Session& session = *session_;
  session.wanted = false;
  [session.delegate setSink:nullptr];
  if (session.capture.isRunning) [session.capture stopRunning];
  session.releaseActivity();
}

bool MacCamera::inUseElsewhere() const {
  std::lock_guard guard(session_->deviceLock);
  return session_->device && session_->device.isInUseByAnotherApplication;
}

CVPixelBufferRef pixelBuffer(const CameraFrame& frame) {
  if (!frame.image) return nullptr;
  auto buffer = static_cast<CMSampleBufferRef>(const_cast<void*>(frame.image.get()));
  return CMSampleBufferGetImageBuffer(buffer);
}

bool MacCameraAccess::authorized() {
  return [AVCaptureDevice authorizationStatusForMediaType:AVMediaTypeVideo] ==
         AVAuthorizationStatusAuthorized;
}

bool MacCameraAccess::undecided() {
  return [AVCaptureDevice authorizationStatusForMediaType:AVMediaTypeVideo] ==
         AVAuthorizationStatusNotDetermined;
}

void MacCameraAccess::request(std::function<void(bool granted)> done) {
  [AVCaptureDevice requestAccessForMediaType:AVMediaTypeVideo
                           completionHandler:^(BOOL granted) {
                             if (done) done(granted);
                           }];
}

}  // namespace sodam
