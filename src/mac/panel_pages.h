#pragma once

// Main thread only: the panel's pages.

#import <AppKit/AppKit.h>

#include <vector>

#include "app/app_delegate.h"
#include "app/panel_page.h"
#include "app/report_page.h"
#include "mac/panel_views.h"
#include "platform/capture_shield.h"

NS_ASSUME_NONNULL_BEGIN

// What a page reads and asks: the application core (its pages' models, its
// store), the panel's model (the actions) and the capture shield, which the
// settings page tells when hiding the camera changes. All outlive the pages.
struct SJPanelContext {
  sodam::AppDelegate* core;
  sodam::CaptureShield* shield;

  sodam::PanelModel& model() const { return core->panelModel(); }
};

// A page of the panel. The window asks it to read its model again when the
// records, the monitor or the panel's model changed.
@protocol SJPanelPage <NSObject>
- (void)reload;
@end

// The view of a page. A page that is not built yet is a placeholder that
// says the feature is coming; a feature brings its page by adding its case.
NSView<SJPanelPage>* SJMakePanelPage(sodam::PanelPage page, const SJPanelContext& context);

// The pages, each in its own file.
NSView<SJPanelPage>* SJMakeHomePage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeFocusPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeReportPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeSettingsPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeStretchPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeDoraniPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeDoctorPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeDeskPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeCameraPage(const SJPanelContext& context);
// The together family: the study rooms, the ranking and the calendar.
NSView<SJPanelPage>* SJMakeGroupsPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeRankingPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeCalendarPage(const SJPanelContext& context);
NSView<SJPanelPage>* SJMakeComingPage(sodam::PanelPage page);

// A page's frame: the content scrolls under a title and caption, inside
// the page's margins.
NSView* SJPageFrame(NSString* title, NSString* caption, NSView* content);

NS_ASSUME_NONNULL_END
