#include "workspace/desk_scene.h"

#include <algorithm>
#include <cmath>

#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

using Shape = DeskScene::Shape;
using Ink = DeskScene::Ink;
using Kind = Shape::Kind;

constexpr double seatThicknessCm = 5;
constexpr double chairBaseHalfCm = 24;
constexpr double deskSlabCm = 3;
constexpr double deskReachBeyondScreenCm = 25;
constexpr double shortestDeskCm = 70;
constexpr double keyboardHalfDepthCm = 7;
constexpr double limbWidthCm = 9;
constexpr double trunkWidthCm = 13;
constexpr double headShare = 0.055;
constexpr double marginCm = 12;

std::vector<V2> box(double left, double bottom, double right, double top) {
  return {{left, bottom}, {right, bottom}, {right, top}, {left, top}};
}

class Builder {
 public:
  explicit Builder(const DeskGeometry& g) : g_(g) {}

  DeskScene build() {
    floor();
    if (g_.setup.kind == DeskKind::sofa) {
      sofa();
    } else if (g_.setup.kind.chair()) {
      chair();
    }
    if (g_.setup.kind != DeskKind::sofa) desk();
    screens();
    bodyShapes();
    guides();
    bounds();
    return std::move(scene_);
  }

 private:
  void add(Kind kind, Ink ink, std::string_view part, std::vector<V2> points, double width = 1,
           bool dashed = false, double radius = 0) {
    scene_.shapes.push_back({kind, ink, part, std::move(points), radius, width, dashed});
  }
  void line(Ink ink, std::string_view part, std::vector<V2> points, double width) {
    add(Kind::line, ink, part, std::move(points), width);
  }
  void polygon(Ink ink, std::string_view part, std::vector<V2> points) {
    add(Kind::polygon, ink, part, std::move(points));
  }

  void floor() { line(Ink::floor, "floor", {{g_.toe.x - 120, 0}, {g_.setup.depth + 60, 0}}, 0.8); }

  void chair() {
    const DeskSetup& s = g_.setup;
    const double top = s.seat;
    const double middle = (g_.seatBack + g_.seatFront) / 2;
    line(Ink::furniture, "chair", {{middle, top - seatThicknessCm}, {middle, 4}}, 3);
    line(Ink::furniture, "chair", {{middle - chairBaseHalfCm, 3}, {middle + chairBaseHalfCm, 3}},
         2.5);
    const V2 backFoot{g_.seatBack, top};
    line(Ink::furniture, "chair",
         {backFoot, backFoot + V2{0, 0.3 * g_.body.height}.turned(s.recline)}, 4);
    polygon(Ink::furniture, "chair", box(g_.seatBack, top - seatThicknessCm, g_.seatFront, top));
    if (s.cushion > 0) {
      polygon(Ink::soft, "cushion", box(g_.seatBack + 2, top, g_.seatFront - 2, g_.seatTop));
    }
    if (s.footrest > 0.5) {
      polygon(Ink::furniture, "footrest", box(g_.ankle.x - 16, 0, g_.toe.x + 4, s.footrest));
    }
  }

  void sofa() {
    const double top = g_.setup.seat;
    polygon(Ink::soft, "sofa", box(g_.seatBack - 10, 0, g_.seatFront, top));
    const V2 backFoot{g_.seatBack - 4, top};
    line(Ink::soft, "sofa",
         {backFoot, backFoot + V2{0, 0.28 * g_.body.height}.turned(g_.setup.recline)}, 14);
    // A pillow on the lap carries the laptop, as high as its stand says.
    const double x = g_.laptopHinge ? g_.laptopHinge->x : g_.knee.x;
    const double lap = std::max(g_.hip.y, g_.knee.y) + limbWidthCm / 2;
    polygon(Ink::soft, "lap", box(x - g_.laptopScreenHeight(), lap, x + 2, g_.surface));
  }

  void desk() {
    const double d = g_.setup.desk;
    const double far = std::max(g_.setup.depth + deskReachBeyondScreenCm, shortestDeskCm);
    polygon(Ink::furniture, "desk", box(0, d - deskSlabCm, far, d));
    line(Ink::furniture, "desk", {{4, d - deskSlabCm}, {4, 0}}, 3);
    line(Ink::furniture, "desk", {{far - 4, d - deskSlabCm}, {far - 4, 0}}, 3);
  }

  void laptop() {
    const V2 hinge = *g_.laptopHinge;
    const double S = g_.laptopScreenHeight();
    const double baseBottom = hinge.y - 1.6;
    const DeskKind kind = g_.setup.kind;
    if (kind == DeskKind::laptopStand && g_.setup.stand > 0) {
      polygon(Ink::furniture, "stand",
              {{hinge.x - S + 4, g_.surface},
               {hinge.x + 1, g_.surface},
               {hinge.x + 1, baseBottom},
               {hinge.x - S + 1, baseBottom}});
    }
    polygon(Ink::furniture, "laptop", box(hinge.x - S + 1, baseBottom, hinge.x, hinge.y));
    const double l = rad(g_.setup.lid - 90);
    line(Ink::furniture, "laptop", {hinge, hinge + V2{S * std::sin(l), S * std::cos(l)}}, 1.6);
    line(Ink::screen, "laptop", {*g_.laptopBottom, *g_.laptopTop}, 1);
  }

  void monitor() {
    const V2 bottom = *g_.monitorBottom;
    const V2 top = *g_.monitorTop;
    const double d = g_.setup.desk;
    const V2 back = (bottom + top) * 0.5 + V2{3, 0};
    line(Ink::furniture, "monitor", {{g_.setup.depth - 6, d + 0.6}, {g_.setup.depth + 14, d + 0.6}},
         1.2);
    line(Ink::furniture, "monitor", {{g_.setup.depth + 5, d}, {back.x + 2, back.y}}, 2.4);
    line(Ink::screen, "monitor", {bottom, top}, 2.5);
  }

  void keyboard() {
    const V2 k = g_.keyboard;
    polygon(Ink::furniture, "keyboard",
            box(k.x - keyboardHalfDepthCm, k.y - 1.8, k.x + keyboardHalfDepthCm, k.y));
  }

  void screens() {
    if (g_.setup.kind.keyboard()) keyboard();
    if (g_.monitorBottom) monitor();
    if (g_.laptopHinge) laptop();
  }

  void bodyShapes() {
    line(Ink::body, "body", {g_.toe, g_.ankle, g_.knee, g_.hip}, limbWidthCm);
    line(Ink::body, "body", {g_.hip, g_.shoulder, g_.neck}, trunkWidthCm);
    add(Kind::circle, Ink::body, "head", {g_.head}, 1, false, headShare * g_.body.height);
    line(Ink::body, "arm", {g_.shoulder, g_.elbow, g_.hand}, limbWidthCm * 0.8);
    add(Kind::circle, Ink::guide, "eye", {g_.eye}, 1, false, 1.2);
  }

  void guides() {
    add(Kind::line, Ink::guide, "sight", {g_.eye, g_.screenTop}, 0.5, true);
    add(Kind::line, Ink::guide, "eyeLevel", {g_.eye, {g_.screenTop.x + 8, g_.eye.y}}, 0.3, true);
    const V2 middle = g_.screenMiddle();
    add(Kind::line, Ink::guide, "gaze", {g_.eye, middle}, 0.3, true);
    scene_.labels.push_back(
        {g_.eye + V2{10, 4}, format("시선 %lld°", roundedInt(g_.gazeDownDegrees()))});
    scene_.labels.push_back(
        {g_.elbow + V2{5, -10}, format("팔꿈치 %lld°", roundedInt(g_.elbowDegrees()))});
    scene_.labels.push_back({(g_.eye + middle) * 0.5 + V2{0, -7},
                             format("화면까지 %lldcm", roundedInt(g_.viewDistance()))});
  }

  void bounds() {
    V2 low{1e9, 0};
    V2 high{-1e9, -1e9};
    for (const auto& shape : scene_.shapes) {
      for (const V2& p : shape.points) {
        const double r = shape.radius + shape.width / 2;
        low = {std::min(low.x, p.x - r), std::min(low.y, p.y - r)};
        high = {std::max(high.x, p.x + r), std::max(high.y, p.y + r)};
      }
    }
    scene_.low = low - V2{marginCm, marginCm};
    scene_.high = high + V2{marginCm, marginCm};
  }

  const DeskGeometry& g_;
  DeskScene scene_;
};

}  // namespace

DeskScene DeskScene::of(const DeskGeometry& geometry) {
  return Builder(geometry).build();
}

std::vector<const DeskScene::Shape*> DeskScene::part(std::string_view name) const {
  std::vector<const Shape*> out;
  for (const auto& shape : shapes)
    if (shape.part == name) out.push_back(&shape);
  return out;
}

}  // namespace sodam
