#pragma once

// Main thread only: the panel's stretch page. Without a session it shows the
// day's routine card and the library by area; with one, the session: the
// figure and the user's mirrored figure, the framing checklist, the
// countdowns, the cue, the repetitions and the commands.

#import <AppKit/AppKit.h>

#include <functional>
#include <vector>

#include "app/stretch_page.h"
#include "coach/coach_session.h"

NS_ASSUME_NONNULL_BEGIN

namespace sodam {

// What the page asks of the application.
struct StretchHost {
  std::function<CoachSession*()> session;
  std::function<StretchPage()> page;
  std::function<void()> startRoutine;
  std::function<void(std::vector<Stretch>)> start;
};

}  // namespace sodam

// A stretch figure drawn from a pose, with its highlighted parts.
@interface SJStretchFigureView : NSView
@property(nonatomic, copy) NSColor* tint;
- (void)showPose:(const sodam::Pose&)pose
           stage:(sodam::Stage)stage
           focus:(const std::vector<sodam::Focus>&)focus;
@end

@interface SJStretchPageView : NSView
- (instancetype)initWithHost:(sodam::StretchHost)host;
// Shows the library or the session, whichever is there now.
- (void)reload;
@end

NS_ASSUME_NONNULL_END
