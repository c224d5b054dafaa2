#include "linux/desk_svg.h"

#include "alerts/theme.h"
#include "support/text.h"

namespace sodam {

namespace {

// Pixels per centimetre, and the room above the drawing for its title.
constexpr double scale = 4;
constexpr double titleRoom = 36;
constexpr const char* font = "'Noto Sans CJK KR', 'Apple SD Gothic Neo', sans-serif";

std::string hex(Theme tint) {
  const ThemeColor c = themeColor(tint);
  return format("#%02x%02x%02x", c.red, c.green, c.blue);
}

struct Paint {
  std::string stroke;
  std::string fill;
};

Paint paintOf(DeskScene::Ink ink) {
  switch (ink) {
    case DeskScene::Ink::floor:
      return {"#c7c7cc", "none"};
    case DeskScene::Ink::furniture:
      return {"#8e8e93", "#d1d1d6"};
    case DeskScene::Ink::soft:
      return {"#c9a27e", "#ecd5bd"};
    case DeskScene::Ink::screen:
      return {hex(Theme::blue), hex(Theme::blue)};
    case DeskScene::Ink::body:
      return {hex(Theme::coral), hex(Theme::coral)};
    case DeskScene::Ink::guide:
      return {hex(Theme::orange), hex(Theme::orange)};
  }
  return {"#000000", "none"};
}

std::string escaped(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else {
      out += c;
    }
  }
  return out;
}

// From the scene's centimetres, y up, to the picture's pixels, y down.
class Canvas {
 public:
  explicit Canvas(const DeskScene& scene) : low_(scene.low), high_(scene.high) {}

  double width() const { return (high_.x - low_.x) * scale; }
  double height() const { return (high_.y - low_.y) * scale + titleRoom; }
  double x(double cm) const { return (cm - low_.x) * scale; }
  double y(double cm) const { return (high_.y - cm) * scale + titleRoom; }
  std::string points(const std::vector<V2>& ps) const {
    std::string out;
    for (const V2& p : ps)
      out += format("%s%.1f,%.1f", out.empty() ? "" : " ", x(p.x), y(p.y));
    return out;
  }

 private:
  V2 low_;
  V2 high_;
};

std::string element(const Canvas& canvas, const DeskScene::Shape& shape) {
  const Paint paint = paintOf(shape.ink);
  using Kind = DeskScene::Shape::Kind;
  switch (shape.kind) {
    case Kind::circle:
      return format(R"(<circle cx="%.1f" cy="%.1f" r="%.1f" fill="%s"/>)",
                    canvas.x(shape.points[0].x), canvas.y(shape.points[0].y), shape.radius * scale,
                    paint.fill.c_str());
    case Kind::polygon:
      return format(R"(<polygon points="%s" fill="%s" stroke="%s" stroke-width="1.5"/>)",
                    canvas.points(shape.points).c_str(), paint.fill.c_str(), paint.stroke.c_str());
    case Kind::line:
      return format(R"(<polyline points="%s" fill="none" stroke="%s" stroke-width="%.1f" )"
                    R"(stroke-linecap="round" stroke-linejoin="round"%s/>)",
                    canvas.points(shape.points).c_str(), paint.stroke.c_str(), shape.width * scale,
                    shape.dashed ? R"( stroke-dasharray="6 5")" : "");
  }
  return "";
}

}  // namespace

std::string deskSvg(const DeskScene& scene, const std::string& title) {
  const Canvas canvas(scene);
  std::string svg = format(
      R"(<svg xmlns="http://www.w3.org/2000/svg" width="%.0f" height="%.0f" viewBox="0 0 %.0f %.0f">)"
      "\n",
      canvas.width(), canvas.height(), canvas.width(), canvas.height());
  svg += R"(<rect width="100%" height="100%" fill="#ffffff"/>)"
         "\n";
  svg += format(R"(<text x="16" y="26" font-family="%s" font-size="18" font-weight="700" )"
                R"(fill="#1c1c1e">%s</text>)"
                "\n",
                font, escaped(title).c_str());
  std::string_view open;
  for (const auto& shape : scene.shapes) {
    if (shape.part != open) {
      if (!open.empty()) svg += "</g>\n";
      open = shape.part;
      svg += format(R"(<g class="%.*s">)", static_cast<int>(open.size()), open.data()) + "\n";
    }
    svg += "  " + element(canvas, shape) + "\n";
  }
  if (!open.empty()) svg += "</g>\n";
  svg += R"(<g class="labels">)"
         "\n";
  for (const auto& label : scene.labels) {
    svg += format(R"(  <text x="%.1f" y="%.1f" font-family="%s" font-size="13" fill="#3a3a3c">)"
                  "%s</text>\n",
                  canvas.x(label.at.x), canvas.y(label.at.y), font, escaped(label.text).c_str());
  }
  svg += "</g>\n</svg>\n";
  return svg;
}

}  // namespace sodam
