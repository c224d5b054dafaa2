#pragma once

// Called on the main thread; it asks the window server once per call.

#include <optional>

namespace sodam {

// The built-in display's physical height in centimetres, for the lid
// geometry. Nothing without a built-in display, or when the display reports
// 100 mm or less (no size, or a size no laptop screen has), so the lid
// geometry keeps its default screen.
std::optional<double> builtInDisplayHeightCm();

}  // namespace sodam
