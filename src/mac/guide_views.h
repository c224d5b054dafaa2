#pragma once

#import <AppKit/AppKit.h>

#include <optional>
#include <string>

#include "posture/guide_model.h"

@class SJGlassPreview;

NS_ASSUME_NONNULL_BEGIN

// What the guide's buttons ask for; the window's controller passes each on
// to the guide model.
@protocol SJGuideActions <NSObject>
- (void)goNext:(nullable id)sender;
- (void)goBack:(nullable id)sender;
- (void)allowCamera:(nullable id)sender;
- (void)askCamera:(nullable id)sender;
- (void)startLearning:(nullable id)sender;
- (void)acceptAnyway:(nullable id)sender;
- (void)finish:(nullable id)sender;
@end

// One step of the learning guide. Main thread.
@interface SJGuidePage : NSView

// The camera preview on the steps that show the camera.
@property(nonatomic, readonly, nullable) SJGlassPreview* preview;
// A page on its way out takes no more clicks.
@property(nonatomic) BOOL retired;

// The learning's state, on the page that learns; other pages ignore it.
- (void)showLearn:(const sodam::GuideModel::Learn&)learn
             note:(const std::optional<std::string>&)note;
// The capture's progress bar, from 0 to 1, while it is up.
- (void)showProgress:(double)progress;

@end

// The page for a step; its buttons call the actions object, held weakly.
SJGuidePage* SJMakeGuidePage(sodam::GuideModel::Step step, id<SJGuideActions> actions);

// The guide's texts come from the core as UTF-8.
NSString* SJString(const std::string& text);

NS_ASSUME_NONNULL_END
