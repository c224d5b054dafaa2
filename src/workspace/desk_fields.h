#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "workspace/desk_setup.h"

namespace sodam {

// One number of a desk setup the user can change: its record key, its
// Korean label and unit, its range and step for a slider, and the kinds of
// place where it means something. The record, the desk page's controls and
// the command line all go by this table.
struct DeskField {
  std::string_view key;
  std::string_view label;
  std::string_view unit;
  double DeskSetup::*member;
  double low;
  double high;
  double step;
  bool (*applies)(DeskKind kind);

  double get(const DeskSetup& setup) const { return setup.*member; }
  // Sets the value held within the range.
  void set(DeskSetup& setup, double value) const;
};

// Every number of the setup, in the record's order.
const std::vector<DeskField>& deskFields();
const DeskField* findDeskField(std::string_view key);
// The fields a kind of place shows.
std::vector<const DeskField*> deskFieldsOf(DeskKind kind);

}  // namespace sodam
