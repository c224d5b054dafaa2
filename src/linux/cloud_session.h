#pragma once
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "cloud/cloud_auth.h"
#include "cloud/firestore.h"
#include "linux/curl_http.h"
#include "linux/file_keychain.h"
#include "support/manual_scheduler.h"

namespace sodam {

// The cloud as the `sodamjari group` commands use it: the sign-in and the
// database client over libcurl, the keychain (the secret service or a private
// file in the data directory), and
// a main loop that runs the scheduler in real time.
class CloudSession {
 public:
  CloudSession(const std::filesystem::path& dataDirectory, CloudConfig config,
               std::function<void(const std::string& url)> openUrl);

  // Runs posted work and due timers until `done` holds or the seconds pass;
  // whether `done` held.
  bool runUntil(const std::function<bool()>& done, double timeoutSeconds);
  // Which keychain holds the session, for the user.
  std::string keychainSummary() const;

  ManualClock clock;
  ManualScheduler scheduler{clock};
  CurlHttp http{scheduler};
  std::string keychainKind;
  std::unique_ptr<Keychain> keychain;
  CloudAuth auth;
  Firestore firestore{auth, http};
};

// The desktop's secret service when one answers, else a private file in the
// data directory; `kind` tells the user which.
std::unique_ptr<Keychain> openLinuxKeychain(const std::filesystem::path& dataDirectory,
                                            std::string& kind);

// Opens a URL in the desktop's browser with xdg-open; false when it can't start.
bool openInBrowser(const std::string& url);

}  // namespace sodam
