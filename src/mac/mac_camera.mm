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

AVCaptureDevice* findCamera() {
  AVCaptureDeviceDiscoverySession* discovery = [AVCaptureDeviceDiscoverySession
      discoverySessionWithDeviceTypes:@[ AVCaptureDeviceTypeBuiltInWideAngleCamera ]
                            mediaType:AVMediaTypeVideo
                             position:AVCaptureDevicePositionUnspecified];
  if (AVCaptureDevice* builtIn = discovery.devices.firstObject) return builtIn;
  return [AVCaptureDevice defaultDeviceWithMediaType:AVMediaTypeVideo];
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

// The hardware need not make more frames than the fastest pacing keeps. A
// device that refuses the cap keeps its own rate, and pacing drops the surplus.
void capFrameRate(AVCaptureDevice* device) {
  const CMTime frameDuration = CMTimeMake(1, maxFramesPerSecond);
  if (!formatAllows(device.activeFormat, frameDuration)) return;
  if (![device lockForConfiguration:nil]) return;
  @try {
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
  dispatch_queue_t frameQueue;

  // Set on the constructor's thread and the session queue, read on the main thread.
  mutable std::mutex deviceLock;
  AVCaptureDevice* device;

  // Inside one configuration; on failure the session is left as it was.
  bool connect(AVCaptureDeviceInput* input) {
    if (![capture canAddInput:input]) return false;
    [capture addInput:input];
    output.videoSettings = frameSettings();
    output.alwaysDiscardsLateVideoFrames = YES;
    [output setSampleBufferDelegate:delegate queue:frameQueue];
    if (![capture canAddOutput:output]) {
      [capture removeInput:input];
      return false;
    }
    [capture addOutput:output];
    if ([capture canSetSessionPreset:AVCaptureSessionPreset1280x720])
      capture.sessionPreset = AVCaptureSessionPreset1280x720;
    keepUnmirrored([output connectionWithMediaType:AVMediaTypeVideo]);
    return true;
  }
};

// The device is looked for at once, so that whether another application holds
// it is known before the first start; configure looks again, as a camera may
// have come or gone since.
MacCamera::MacCamera(DispatchSerialQueue& frameQueue) : session_(std::make_unique<Session>()) {
  session_->frameQueue = frameQueue.native();
  session_->device = findCamera();
}

MacCamera::~MacCamera() {
  [session_->delegate setSink:nullptr];
  [session_->output setSampleBufferDelegate:nil queue:nil];
}

bool MacCamera::configure() {
  AVCaptureDevice* device = findCamera();
  {
    std::lock_guard guard(session_->deviceLock);
    session_->device = device;
  }
  if (!device) return false;
  AVCaptureDeviceInput* input = [AVCaptureDeviceInput deviceInputWithDevice:device error:nil];
  if (!input) return false;
  [session_->capture beginConfiguration];
  const bool connected = session_->connect(input);
  [session_->capture commitConfiguration];
  if (!connected) return false;
  capFrameRate(device);
  return true;
}

void MacCamera::startRunning(Sink sink) {
  [session_->delegate setSink:std::move(sink)];
  if (!session_->capture.isRunning) [session_->capture startRunning];
}

void MacCamera::stopRunning() {
  [session_->delegate setSink:nullptr];
  if (session_->capture.isRunning) [session_->capture stopRunning];
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
