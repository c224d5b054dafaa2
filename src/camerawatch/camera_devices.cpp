#include "camerawatch/camera_devices.h"

namespace sodam {

std::vector<std::string> macInstallFolders(const std::string& home) {
  std::vector<std::string> folders = {"/Applications/", "/System/", "/usr/", "/Library/"};
  if (!home.empty()) folders.push_back(home + "/Applications/");
  return folders;
}

std::string PlainAppCatalog::applicationPath(const std::string& identifier) {
  return !identifier.empty() && identifier.front() == '/' ? identifier : std::string();
}

}  // namespace sodam
