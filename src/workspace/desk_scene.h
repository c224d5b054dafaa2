#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workspace/desk_geometry.h"

namespace sodam {

// The side view of a desk setup as simple shapes in the geometry's own
// centimetres, back to front, for every drawing of it: the desk page's view
// and the command line's SVG draw the same scene, each in its own colours.
struct DeskScene {
  // What a shape is, which decides its colour.
  enum class Ink { floor, furniture, soft, screen, body, guide };

  struct Shape {
    enum class Kind { line, polygon, circle };
    Kind kind = Kind::line;
    Ink ink = Ink::furniture;
    std::string_view part;   // "chair", "desk", "monitor", "body", "sight", ...
    std::vector<V2> points;  // a circle's centre is its one point
    double radius = 0;
    double width = 1;  // a line's stroke, in centimetres
    bool dashed = false;
  };

  // A measure written beside the part it measures.
  struct Label {
    V2 at;
    std::string text;
  };

  std::vector<Shape> shapes;
  std::vector<Label> labels;
  // Everything drawn lies within, with a margin.
  V2 low;
  V2 high;

  static DeskScene of(const DeskGeometry& geometry);

  // The shapes of one part, in drawing order.
  std::vector<const Shape*> part(std::string_view name) const;
};

}  // namespace sodam
