#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/app_delegate.h"
#include "platform/defaults.h"
#include "sim/cloud_double.h"
#include "sim/sim_machine.h"
#include "support/manual_scheduler.h"

namespace sodam::testing {

// Records what the shell is asked to show.
struct RecordingShell final : AppShell, PillPresenter, ScreenSource, OverlayPresenter {
  std::vector<std::string> calls;
  std::vector<PanelPage> pages;
  int guidesShown = 0;
  int statusDraws = 0;
  StatusLook look;
  OverlayPresenter::Window nextWindow = 1;

  void drawStatus(const StatusItem::Refresh& refresh) override {
    ++statusDraws;
    look = refresh.look;
  }
  void openPanel(PanelPage page) override { pages.push_back(page); }
  void presentGuide(GuideModel&) override { ++guidesShown; }
  void closeGuide() override { calls.push_back("close guide"); }
  void openUrl(const std::string& url) override { calls.push_back("open " + url); }
  void terminate() override { calls.push_back("terminate"); }

  Size contentSize(const Pill&) override { return {220, 32}; }
  Size bubbleSize(const Pill&) override { return {180, 44}; }
  void showPanel(Rect) override {}
  void hidePanel() override {}
  void update(const PillModel&, PillAnimation) override {}
  void showCatcher(Rect) override {}
  void hideCatcher() override {}

  std::vector<ScreenInfo> screens() const override { return {SimMachine::builtInScreen()}; }

  std::vector<Window> makeBorderWindows() override {
    calls.push_back("border on");
    return {nextWindow++};
  }
  std::vector<Window> makeBlurWindows(bool, double) override {
    calls.push_back("blur windows");
    return {nextWindow++};
  }
  void orderOut(Window) override { calls.push_back("window out"); }
  bool blurCallAvailable() override { return true; }
  void setBackgroundAlpha(Window, double) override {}
  std::int32_t setBlurRadius(Window, std::int32_t) override { return 0; }
  void useEffectView(Window, double) override {}
  void setAlpha(Window, double) override {}
};

// A running process whose hardening facts the test sets.
struct ProcessDouble final : ProcessInspector {
  bool tracer = false;
  bool traced() const override { return tracer; }
  std::string injectedLibraries() const override { return {}; }
  std::optional<bool> signatureValid() const override { return std::nullopt; }
};

// The application core on the simulated laptop, in virtual time.
struct AppHarness {
  ManualClock clock{Date::fromUnix(1'795'000'000)};
  ManualScheduler scheduler{clock};
  MemoryDefaults defaults;
  SimMachine machine{scheduler, clock};
  RecordingShell shell;
  NoConfinement confinement;
  ProcessDouble process;
  std::unique_ptr<Lockdown> lock = Lockdown::engage(confinement, scheduler);
  std::unique_ptr<LogLink> link = machine.cameras.link(scheduler);
  // The service's double and the user's session, for a harness with the cloud.
  struct Cloud {
    CloudDouble service;
    std::unique_ptr<CloudDouble::Http> http;
    MemoryKeychain keychain;
  };
  std::unique_ptr<Cloud> cloud;
  std::unique_ptr<AppDelegate> app;
  std::vector<std::string> pillTitles;

  // With a learned posture unless told otherwise; `signedInAs` gives the
  // application the cloud, over an in-process double, with that user signed in.
  explicit AppHarness(bool learned = true, std::optional<std::string> signedInAs = std::nullopt);
  // Lets the double's answers in flight arrive.
  void settle();
  void launch(bool loginLaunch = false);
  void advance(double seconds) { scheduler.advance(seconds); }
  // The pill up now, as "title | detail"; empty without one.
  std::string pill() const;
  bool runUntil(Monitor::Phase phase, double limitSeconds);
};

}  // namespace sodam::testing
