#include "mac/mac_camera_devices.h"

#import <AppKit/AppKit.h>
#import <CoreMediaIO/CMIOHardware.h>
#include <dispatch/dispatch.h>

namespace sodam {

namespace {

CMIOObjectPropertyAddress globalAddress(CMIOObjectPropertySelector selector) {
  // Scope global, element 0: the main element.
  return CMIOObjectPropertyAddress{selector, kCMIOObjectPropertyScopeGlobal,
                                   kCMIOObjectPropertyElementMain};
}

void listen(CMIOObjectID object, CMIOObjectPropertySelector selector,
            std::function<void()> listener) {
  const CMIOObjectPropertyAddress address = globalAddress(selector);
  auto shared = std::make_shared<std::function<void()>>(std::move(listener));
  CMIOObjectAddPropertyListenerBlock(object, &address, dispatch_get_main_queue(),
                                     ^(UInt32, const CMIOObjectPropertyAddress*) {
                                       (*shared)();
                                     });
}

}  // namespace

std::optional<std::vector<CameraDevices::DeviceId>> MacCameraDevices::list() {
  const CMIOObjectPropertyAddress address = globalAddress(kCMIOHardwarePropertyDevices);
  UInt32 size = 0;
  if (CMIOObjectGetPropertyDataSize(kCMIOObjectSystemObject, &address, 0, nullptr, &size) !=
      kCMIOHardwareNoError) {
    return std::nullopt;
  }
  std::vector<CMIOObjectID> devices(size / sizeof(CMIOObjectID));
  UInt32 used = 0;
  if (!devices.empty() &&
      CMIOObjectGetPropertyData(kCMIOObjectSystemObject, &address, 0, nullptr, size, &used,
                                devices.data()) != kCMIOHardwareNoError) {
    return std::nullopt;
  }
  devices.resize(used / sizeof(CMIOObjectID));
  return std::vector<DeviceId>(devices.begin(), devices.end());
}

std::optional<bool> MacCameraDevices::running(DeviceId device) {
  const CMIOObjectPropertyAddress address =
      globalAddress(kCMIODevicePropertyDeviceIsRunningSomewhere);
  UInt32 flag = 0;
  UInt32 used = 0;
  if (CMIOObjectGetPropertyData(device, &address, 0, nullptr, sizeof flag, &used, &flag) !=
          kCMIOHardwareNoError ||
      used != sizeof flag) {
    return std::nullopt;
  }
  return flag != 0;
}

void MacCameraDevices::onListChange(std::function<void()> listener) {
  listen(kCMIOObjectSystemObject, kCMIOHardwarePropertyDevices, std::move(listener));
}

void MacCameraDevices::onRunningChange(DeviceId device, std::function<void()> listener) {
  listen(device, kCMIODevicePropertyDeviceIsRunningSomewhere, std::move(listener));
}

std::string MacAppCatalog::applicationPath(const std::string& identifier) {
  NSString* text = [NSString stringWithUTF8String:identifier.c_str()];
  if (text.length == 0) return {};
  NSURL* url = [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:text];
  const char* path = url.path.UTF8String;
  return path ? std::string(path) : std::string();
}

std::optional<std::string> MacAppCatalog::displayName(const std::string& bundlePath) {
  NSString* path = [NSString stringWithUTF8String:bundlePath.c_str()];
  if (!path) return std::nullopt;
  const char* text = [NSFileManager.defaultManager displayNameAtPath:path].UTF8String;
  if (!text) return std::nullopt;
  return std::string(text);
}

std::vector<std::string> MacAppCatalog::installFolders() {
  const char* home = NSHomeDirectory().UTF8String;
  return macInstallFolders(home ? home : "");
}

}  // namespace sodam
