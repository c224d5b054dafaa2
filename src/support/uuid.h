#pragma once

#include <string>

namespace sodam {

// A new random (version 4) UUID in its usual text form, upper-case hex.
std::string newUuid();

}  // namespace sodam
