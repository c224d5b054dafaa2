#pragma once

// Owns one reference to a CoreFoundation object (IOKit's HID and power
// objects are CoreFoundation objects too). Any thread may use a holder; the
// object's own rules decide where it may be used.

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace sodam {

// The reference comes from a Create or Copy function: the holder takes it over.
struct AdoptReference {
  explicit AdoptReference() = default;
};
inline constexpr AdoptReference adoptReference{};

// The reference comes from a Get function: the holder retains it.
struct RetainReference {
  explicit RetainReference() = default;
};
inline constexpr RetainReference retainReference{};

template <class Ref>
class CFHolder {
 public:
  CFHolder() = default;
  CFHolder(AdoptReference, Ref ref) : ref_(ref) {}
  CFHolder(RetainReference, Ref ref) : ref_(ref) {
    if (ref_) CFRetain(ref_);
  }
  CFHolder(const CFHolder& other) : CFHolder(retainReference, other.ref_) {}
  CFHolder(CFHolder&& other) noexcept : ref_(std::exchange(other.ref_, nullptr)) {}
  CFHolder& operator=(CFHolder other) noexcept {
    std::swap(ref_, other.ref_);
    return *this;
  }
  ~CFHolder() {
    if (ref_) CFRelease(ref_);
  }

  Ref get() const { return ref_; }
  explicit operator bool() const { return ref_ != nullptr; }

 private:
  Ref ref_ = nullptr;
};

// Shorthands that read like the call they wrap: adopt(CFArrayCreate(...)).
template <class Ref>
CFHolder<Ref> adopt(Ref ref) {
  return CFHolder<Ref>(adoptReference, ref);
}

template <class Ref>
CFHolder<Ref> retain(Ref ref) {
  return CFHolder<Ref>(retainReference, ref);
}

}  // namespace sodam
