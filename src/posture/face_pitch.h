#pragma once

namespace sodam {

namespace FacePitch {
// Head pitch from the nose-to-chin proportion against the user's neutral one;
// positive when the face tips down, bounded by the search range.
double degrees(double ratio, double baseline);
}  // namespace FacePitch

}  // namespace sodam
