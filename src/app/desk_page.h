#pragma once

#include <optional>
#include <vector>

#include "platform/defaults.h"
#include "workspace/desk_check.h"
#include "workspace/desk_fields.h"
#include "workspace/desk_geometry.h"
#include "workspace/desk_setup.h"

namespace sodam {

// The desk page: the stored desk setup, changed by the page's controls and
// kept at once, with its side view and the rules' verdicts, which follow
// each change. Main thread only.
class DeskPage {
 public:
  // Reads the setup of the one-place case.
  explicit DeskPage(Defaults& defaults);

  const DeskSetup& setup() const { return setup_; }
  DeskGeometry geometry() const { return DeskGeometry(setup_); }
  std::vector<DeskCheck> checks() const { return DeskCheck::judge(geometry()); }
  // The numbers the kind shows, in the record's order.
  std::vector<const DeskField*> fields() const { return deskFieldsOf(setup_.kind); }
  bool showsShape() const { return setup_.kind.usesMonitor(); }
  bool showsFeet() const { return setup_.kind.chair(); }

  // Each change is stored at once.
  void set(const DeskField& field, double value);
  void setShape(ScreenShape shape);
  // Nothing lets the footrest's height decide.
  void setFeet(std::optional<Feet> feet);
  // Another kind of place, with the furniture it brings.
  void switchTo(DeskKind kind);
  // The kind's own defaults, for the user's height.
  void reset();

 private:
  void changed(DeskSetup next);

  Defaults& defaults_;
  DeskSetup setup_;
};

}  // namespace sodam
