#include "workspace/desk_fields.h"

#include "support/numeric.h"

namespace sodam {

void DeskField::set(DeskSetup& setup, double value) const {
  setup.*member = clamp(value, low, high);
}

const std::vector<DeskField>& deskFields() {
  // The sofa's lap places the body and the screen by itself.
  constexpr auto atADesk = [](DeskKind k) { return k != DeskKind::sofa; };
  static const std::vector<DeskField> fields{
      {"height", "키", "센티", &DeskSetup::height, 120, 210, 1, [](DeskKind) { return true; }},
      {"seat", "의자 높이", "센티", &DeskSetup::seat, 30, 70, 1,
       [](DeskKind k) { return k.adjustableSeat(); }},
      {"cushion", "방석", "센티", &DeskSetup::cushion, 0, 15, 1,
       [](DeskKind k) { return k.chair(); }},
      {"footrest", "발받침", "센티", &DeskSetup::footrest, 0, 25, 1,
       [](DeskKind k) { return k.chair(); }},
      {"recline", "등받이 기울기", "도", &DeskSetup::recline, 0, 35, 1,
       [](DeskKind k) { return k.seated(); }},
      {"gap", "책상과의 거리", "센티", &DeskSetup::gap, 0, 50, 1, atADesk},
      {"desk", "책상 높이", "센티", &DeskSetup::desk, 55, 125, 1, atADesk},
      {"depth", "화면까지 깊이", "센티", &DeskSetup::depth, 20, 100, 1, atADesk},
      {"stand", "화면 받침", "센티", &DeskSetup::stand, 0, 40, 1,
       [](DeskKind k) { return k.raisable(); }},
      {"lid", "노트북 화면 각도", "도", &DeskSetup::lid, 90, 140, 1,
       [](DeskKind k) { return k.hasLaptop(); }},
      {"tilt", "모니터 기울기", "도", &DeskSetup::tilt, 0, 30, 1,
       [](DeskKind k) { return k.usesMonitor(); }},
      {"laptopSize", "노트북 크기", "인치", &DeskSetup::laptopSize, 11, 18, 0.5,
       [](DeskKind k) { return k.hasLaptop(); }},
      {"monitorSize", "모니터 크기", "인치", &DeskSetup::monitorSize, 19, 49, 1,
       [](DeskKind k) { return k.usesMonitor(); }},
      {"offset", "화면 옆 위치", "센티", &DeskSetup::offset, -60, 60, 1,
       [](DeskKind k) { return k.lateral(); }},
  };
  return fields;
}

const DeskField* findDeskField(std::string_view key) {
  for (const auto& field : deskFields())
    if (field.key == key) return &field;
  return nullptr;
}

std::vector<const DeskField*> deskFieldsOf(DeskKind kind) {
  std::vector<const DeskField*> out;
  for (const auto& field : deskFields())
    if (field.applies(kind)) out.push_back(&field);
  return out;
}

}  // namespace sodam
