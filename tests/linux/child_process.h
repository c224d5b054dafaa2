#pragma once

// Runs a piece of a test in a forked child, for what must not happen in
// the test's own process: other users' rights, a small disk, a kill.

#include <functional>
#include <iosfwd>
#include <string>

namespace sodam::testing {

struct ChildResult {
  // The exit status, or 128 + the signal that ended the child.
  int status = -1;
  std::string out;
  std::string err;
};

// `body`'s return value is the child's exit status; what it writes to its
// two streams comes back. The child leaves by _exit, so no exit handler of
// the test program (a sanitizer's leak check among them) runs twice.
ChildResult runInChild(const std::function<int(std::ostream& out, std::ostream& err)>& body);

// In a child running as root: become the user "nobody", so that file
// permissions hold as they do for a person. False when that failed.
bool dropRoot();

// In a child: a fresh mount namespace with a tmpfs of `bytes` over `dir`,
// gone when the child ends. False where mounting is not allowed.
bool mountSmallDisk(const std::string& dir, std::size_t bytes);

}  // namespace sodam::testing
