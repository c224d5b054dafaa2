#include "mac/mac_confinement.h"

#import <Foundation/Foundation.h>
#include <dlfcn.h>
#include <pwd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace sodam {

namespace {

// The program's own identifier, for a run outside its bundle (the log helper
// started from the command line).
constexpr const char* ownIdentifier = "kr.lumenfold.sodamjari";

static_assert(_CS_DARWIN_USER_CACHE_DIR == 65538);

using SandboxInitCall = int (*)(const char* profile, std::uint64_t flags, char** errorText);
using SandboxFreeErrorCall = void (*)(char* errorText);

std::optional<std::string> resolvedPath(const char* path) {
  if (!path || !*path) return std::nullopt;
  char* resolved = realpath(path, nullptr);
  if (!resolved) return std::nullopt;
  std::string result(resolved);
  std::free(resolved);
  return result;
}

// The sandbox calls are deprecated in the headers but still in the system
// library, so they are looked up rather than linked.
template <class Call>
Call systemCall(const char* name) {
  return reinterpret_cast<Call>(dlsym(RTLD_DEFAULT, name));
}

}  // namespace

void MacConfinement::ignoreBrokenPipe() {
  std::signal(SIGPIPE, SIG_IGN);
}

std::optional<std::string> MacConfinement::homePath() const {
  const passwd* user = getpwuid(getuid());
  if (!user) return std::nullopt;
  return resolvedPath(user->pw_dir);
}

std::optional<std::string> MacConfinement::cachePath() const {
  const std::size_t size = confstr(_CS_DARWIN_USER_CACHE_DIR, nullptr, 0);
  if (size == 0) return std::nullopt;
  std::vector<char> path(size);
  if (confstr(_CS_DARWIN_USER_CACHE_DIR, path.data(), path.size()) == 0) return std::nullopt;
  return resolvedPath(path.data());
}

std::string MacConfinement::bundleIdentifier() const {
  NSString* identifier = NSBundle.mainBundle.bundleIdentifier;
  return identifier ? std::string(identifier.UTF8String) : std::string(ownIdentifier);
}

bool MacConfinement::apply(const std::string& profile) {
  const auto sandboxInit = systemCall<SandboxInitCall>("sandbox_init");
  if (!sandboxInit) return false;
  char* errorText = nullptr;
  const int status = sandboxInit(profile.c_str(), 0, &errorText);
  if (errorText) {
    if (const auto freeError = systemCall<SandboxFreeErrorCall>("sandbox_free_error"))
      freeError(errorText);
  }
  return status == 0;
}

}  // namespace sodam
