#include "app/desk_page.h"

namespace sodam {

DeskPage::DeskPage(Defaults& defaults) : defaults_(defaults), setup_(DeskSetup::saved(defaults)) {}

void DeskPage::changed(DeskSetup next) {
  if (next == setup_) return;
  setup_ = std::move(next);
  setup_.save(defaults_);
}

void DeskPage::set(const DeskField& field, double value) {
  DeskSetup next = setup_;
  field.set(next, value);
  changed(next);
}

void DeskPage::setShape(ScreenShape shape) {
  DeskSetup next = setup_;
  next.shape = shape;
  changed(next);
}

void DeskPage::setFeet(std::optional<Feet> feet) {
  DeskSetup next = setup_;
  next.feet = feet;
  changed(next);
}

void DeskPage::switchTo(DeskKind kind) {
  if (kind == setup_.kind) return;
  changed(setup_.switched(kind));
}

void DeskPage::reset() {
  DeskSetup fresh = DeskSetup().switched(setup_.kind);
  fresh.height = setup_.height;
  changed(fresh);
}

}  // namespace sodam
