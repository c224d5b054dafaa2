#include <AppKit/AppKit.h>
#include <Foundation/Foundation.h>

#include "mac/mac_cloud.h"

namespace sodam {

void MacHttp::send(HttpRequest request, Answer answer) {
  NSURL* url = [NSURL URLWithString:@(request.url.c_str())];
  if (!url) {
    scheduler_.post([answer] { answer(HttpResponse{}); });
    return;
  }
  NSMutableURLRequest* urlRequest =
      [NSMutableURLRequest requestWithURL:url
                              cachePolicy:NSURLRequestReloadIgnoringLocalCacheData
                          timeoutInterval:request.timeoutSeconds];
  urlRequest.HTTPMethod = @(request.method.c_str());
  for (const auto& [name, value] : request.headers)
    [urlRequest setValue:@(value.c_str()) forHTTPHeaderField:@(name.c_str())];
  if (!request.body.empty())
    urlRequest.HTTPBody = [NSData dataWithBytes:request.body.data() length:request.body.size()];
  Scheduler* scheduler = &scheduler_;
  auto handler = ^(NSData* data, NSURLResponse* response, NSError*) {
    HttpResponse answered;
    if ([response isKindOfClass:[NSHTTPURLResponse class]])
      answered.status = static_cast<int>(((NSHTTPURLResponse*)response).statusCode);
    if (data) answered.body.assign(static_cast<const char*>(data.bytes), data.length);
    scheduler->post([answer, answered] { answer(answered); });
  };
  [[NSURLSession.sharedSession dataTaskWithRequest:urlRequest completionHandler:handler] resume];
}

CloudAuth::Ports MacCloud::ports(const Clock& clock, Scheduler& scheduler) {
  return CloudAuth::Ports{http,
                          keychain,
                          clock,
                          scheduler,
                          [] { return makeMacLoopbackListener(); },
                          [](const std::string& text) {
                            if (NSURL* url = [NSURL URLWithString:@(text.c_str())])
                              [NSWorkspace.sharedWorkspace openURL:url];
                          },
                          [] { [NSApp activateIgnoringOtherApps:YES]; }};
}

}  // namespace sodam
