#pragma once

// Plain values; any thread may wrap or read one. The picture is made on the
// frame queue and drawn on the main thread.

#include <CoreGraphics/CoreGraphics.h>

#include <memory>

#include "posture/capture.h"

namespace sodam {

// Wraps a rendered glass picture; the GlassImage owns the one reference it
// is given, and the last copy to go releases it.
inline GlassImage adoptGlassImage(CGImageRef image) {
  if (!image) return {};
  const Size size{static_cast<double>(CGImageGetWidth(image)),
                  static_cast<double>(CGImageGetHeight(image))};
  return GlassImage{std::shared_ptr<const void>(
                        image,
                        [](const void* held) {
                          CGImageRelease(static_cast<CGImageRef>(const_cast<void*>(held)));
                        }),
                    size};
}

// The picture of a GlassImage made by adoptGlassImage; not retained, so it
// lives as long as the GlassImage does.
inline CGImageRef glassCGImage(const GlassImage& glass) {
  return static_cast<CGImageRef>(const_cast<void*>(glass.handle.get()));
}

}  // namespace sodam
