#include "mac/core_image_glass.h"

#import <CoreImage/CIFilterBuiltins.h>
#import <CoreImage/CoreImage.h>

#include "mac/glass_image.h"
#include "mac/mac_camera.h"

namespace sodam {

namespace {

constexpr double glassScale = 0.25;

// Flips the picture about the vertical line through the middle of its
// extent, so that it stays where it was.
CIImage* mirrored(CIImage* image) {
  const CGRect extent = image.extent;
  const CGFloat across = CGRectGetMinX(extent) + CGRectGetMaxX(extent);
  return [image imageByApplyingTransform:CGAffineTransformMake(-1, 0, 0, 1, across, 0)];
}

}  // namespace

struct CoreImageGlass::Pipeline {
  CIFilter<CIGaussianBlur>* blur = [CIFilter gaussianBlurFilter];
  // Every frame differs, so intermediates kept for reuse would only pile up.
  CIContext* context = [CIContext contextWithOptions:@{kCIContextCacheIntermediates : @NO}];

  // The edge pixels are repeated outward before the blur, so that the
  // border does not fade into transparent black.
  CIImage* blurred(CIImage* frame, double radius) {
    blur.inputImage = frame.imageByClampingToExtent;
    blur.radius = static_cast<float>(radius);
    CIImage* result = [blur.outputImage imageByCroppingToRect:frame.extent];
    // The filter would otherwise hold the frame until the next one.
    blur.inputImage = nil;
    return result;
  }
};

CoreImageGlass::CoreImageGlass() : pipeline_(std::make_unique<Pipeline>()) {}

CoreImageGlass::~CoreImageGlass() = default;

std::optional<GlassImage> CoreImageGlass::render(const CameraFrame& frame, double radius) {
  CVPixelBufferRef buffer = pixelBuffer(frame);
  if (!buffer) return std::nullopt;
  GlassImage glass;
  @autoreleasepool {
    CIImage* image = [CIImage imageWithCVPixelBuffer:buffer];
    CIImage* small = [pipeline_->blurred(image, radius)
        imageByApplyingTransform:CGAffineTransformMakeScale(glassScale, glassScale)];
    CIImage* picture = mirrored(small);
    glass = adoptGlassImage([pipeline_->context createCGImage:picture
                                                     fromRect:CGRectIntegral(picture.extent)]);
  }
  if (!glass.handle) return std::nullopt;
  return glass;
}

}  // namespace sodam
