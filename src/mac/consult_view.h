#pragma once

#import <AppKit/AppKit.h>

#include "app/panel_model.h"

NS_ASSUME_NONNULL_BEGIN

// The consult over the doctor page: one question at a time with the choices
// as tiles, the way back, the answer in its groups with the stretches to run
// at once, and the chat where the system offers a model. It follows the
// panel model's chat and springs from step to step and message to message.
// Main thread only; the model outlives it.
@interface SJConsultView : NSView
- (instancetype)initWithModel:(sodam::PanelModel&)model NS_DESIGNATED_INITIALIZER;
- (instancetype)initWithFrame:(NSRect)frame NS_UNAVAILABLE;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_UNAVAILABLE;
// The panel's model changed whether the consult fills the page.
- (void)refreshSize;
@end

NS_ASSUME_NONNULL_END
