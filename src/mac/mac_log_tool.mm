#include "mac/mac_log_tool.h"

#import <Foundation/Foundation.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "camerawatch/log_helper.h"
#include "mac/mac_calendar.h"

namespace sodam {

MacLogTool::~MacLogTool() {
  stopStream();
}

std::string MacLogTool::show(const std::string& start, const std::string& end,
                             const std::string& predicate) {
  auto child = ChildProcess::start(
      path, {"show", "--start", start, "--end", end, "--style", "ndjson", "--predicate", predicate},
      {.utilityPriority = true});
  if (!child) return {};
  std::string output = child->readAll();
  child->wait();
  return output;
}

bool MacLogTool::startStream(const std::string& predicate, ChunkHandler onChunk) {
  auto child = ChildProcess::start(path, {"stream", "--style", "ndjson", "--predicate", predicate},
                                   {.utilityPriority = true});
  if (!child) return false;
  child->startReading([onChunk = std::move(onChunk)](std::string bytes) {
    if (!bytes.empty()) onChunk(bytes);
  });
  stream_ = std::move(child);
  return true;
}

void MacLogTool::stopStream() {
  if (!stream_) return;
  stream_->terminate();
  stream_.reset();
}

void runMacLogHelper() {
  @autoreleasepool {
    NSString* executable = NSBundle.mainBundle.executablePath;
    HelperSelf self{::getppid(), executable ? std::string(executable.UTF8String) : std::string(),
                    macSystemFolders()};
    SystemClock clock;
    MacLogTool tool;
    UnifiedLog log(tool, std::move(self), systemCalendar().timeZone(), clock);
    LogHelper helper(log, std::cout);
    const int status = helper.run(std::cin);
    std::exit(status);
  }
}

}  // namespace sodam
