#include "mac/status_icon.h"

#include <cmath>
#include <initializer_list>
#include <numbers>

#include "mac/pill_geometry.h"

namespace sodam {

namespace {

using Ears = PillEars;

// Every ear is described as the right one, standing on the origin, one unit
// tall, x pointing away from the face and y up; the placement's transform
// mirrors it for the left side. The part below zero hides in the head.
constexpr CGFloat sink = -0.4;

// Joins the parts of the ears into one outline. Parts overlap (an antenna's
// stalk and ball, the tines of an antler) and a mirrored part winds the
// other way, so they are united rather than simply gathered.
class Outline {
 public:
  void add(CGPathRef part) {
    if (!part) return;
    if (!path_) {
      path_ = retain(part);
    } else if (auto joined = adopt(CGPathCreateCopyByUnioningPath(path_.get(), part, false))) {
      path_ = joined;
    }
  }
  CFHolder<CGPathRef> take() {
    return path_ ? path_ : adopt(static_cast<CGPathRef>(CGPathCreateMutable()));
  }

 private:
  CFHolder<CGPathRef> path_;
};

void addPolygon(Outline& ears, const CGAffineTransform& place,
                std::initializer_list<CGPoint> points) {
  auto part = adopt(CGPathCreateMutable());
  CGPathAddLines(part.get(), &place, points.begin(), points.size());
  CGPathCloseSubpath(part.get());
  ears.add(part.get());
}

void addEllipse(Outline& ears, const CGAffineTransform& place, CGPoint center, CGFloat radiusX,
                CGFloat radiusY, CGFloat turn = 0) {
  const CGAffineTransform local =
      CGAffineTransformRotate(CGAffineTransformTranslate(place, center.x, center.y), turn);
  ears.add(adopt(CGPathCreateWithEllipseInRect(
                     CGRectMake(-radiusX, -radiusY, 2 * radiusX, 2 * radiusY), &local))
               .get());
}

// Thin parts (antlers, antenna stalks) are lines turned into outlines, so
// the ears fill in one go. They are stroked before they are placed, so the
// width grows with the ear.
void addLines(Outline& ears, const CGAffineTransform& place,
              std::initializer_list<std::initializer_list<CGPoint>> lines, CGFloat width) {
  for (const auto& line : lines) {
    auto stroke = adopt(CGPathCreateMutable());
    CGPathAddLines(stroke.get(), nullptr, line.begin(), line.size());
    auto outline = adopt(CGPathCreateCopyByStrokingPath(stroke.get(), nullptr, width,
                                                        kCGLineCapRound, kCGLineJoinRound, 4));
    if (outline) ears.add(adopt(CGPathCreateCopyByTransformingPath(outline.get(), &place)).get());
  }
}

// A closed shape of two quadratic curves: up the inner edge to the tip, and
// down the outer edge.
void addCurvedShape(Outline& ears, const CGAffineTransform& place, CGFloat innerRoot,
                    CGPoint innerBend, CGPoint tip, CGPoint outerBend, CGFloat outerRoot) {
  auto part = adopt(CGPathCreateMutable());
  CGPathMoveToPoint(part.get(), &place, innerRoot, sink);
  CGPathAddQuadCurveToPoint(part.get(), &place, innerBend.x, innerBend.y, tip.x, tip.y);
  CGPathAddQuadCurveToPoint(part.get(), &place, outerBend.x, outerBend.y, outerRoot, sink);
  CGPathCloseSubpath(part.get());
  ears.add(part.get());
}

void addEar(Outline& ears, Ears kind, const CGAffineTransform& place) {
  switch (kind) {
    case Ears::cat:
      return addPolygon(ears, place, {{-0.42, sink}, {0.48, sink}, {0.28, 1.0}});
    case Ears::bear:
      return addEllipse(ears, place, {0.05, 0.28}, 0.44, 0.44);
    case Ears::bunny:
      return addEllipse(ears, place, {0.1, 0.6}, 0.24, 0.82, -0.12);
    case Ears::mouse:
      return addEllipse(ears, place, {0.15, 0.36}, 0.58, 0.58);
    case Ears::hamster:
      return addEllipse(ears, place, {0, 0.02}, 0.36, 0.36);
    case Ears::koala:
      return addEllipse(ears, place, {0.32, 0.3}, 0.62, 0.56);
    case Ears::dog:
      return addEllipse(ears, place, {0.38, 0.12}, 0.58, 0.3, -0.6);
    case Ears::fox:
      return addCurvedShape(ears, place, -0.45, {-0.12, 0.8}, {0.46, 1.25}, {0.72, 0.45}, 0.62);
    case Ears::horns:
      return addCurvedShape(ears, place, -0.2, {-0.12, 0.5}, {0.32, 0.8}, {0.26, 0.3}, 0.22);
    case Ears::antlers:
      return addLines(ears, place,
                      {{{0, sink}, {0.1, 0.45}, {0.46, 1.15}},
                       {{0.1, 0.45}, {-0.22, 0.9}},
                       {{0.3, 0.82}, {0.62, 0.86}}},
                      0.17);
    case Ears::antenna:
      addLines(ears, place, {{{0, sink}, {0.18, 0.72}}}, 0.11);
      return addEllipse(ears, place, {0.2, 0.92}, 0.2, 0.2);
    case Ears::unicorn:
      return addPolygon(ears, place, {{-0.26, sink}, {0.26, sink}, {0, 1.45}});
    case Ears::none:
      return;
  }
}

// The menu-bar icon's face, in points of the 18-point image.
constexpr CGFloat iconSide = 18;
constexpr CGPoint faceCenter{9, 7.5};
constexpr CGFloat faceRadius = 6.5;
constexpr CGFloat outlineWidth = 1.4;
constexpr CGFloat eyeApart = 2.6;
constexpr CGFloat eyeRadius = 1.25;
constexpr CGFloat lookingTurn = 1.5;
constexpr EarPlacement iconEars{{faceCenter.x, faceCenter.y + faceRadius}, 3.4, 2.7};

void fillDot(CGContextRef context, CGPoint center, CGFloat radius) {
  CGContextFillEllipseInRect(
      context, CGRectMake(center.x - radius, center.y - radius, 2 * radius, 2 * radius));
}

void drawEyes(CGContextRef context, StatusIcon::Eyes eyes) {
  for (CGFloat side : {-1.0, 1.0}) {
    const CGPoint eye{faceCenter.x + side * eyeApart, faceCenter.y};
    switch (eyes) {
      case StatusIcon::Eyes::open:
        fillDot(context, eye, eyeRadius);
        break;
      case StatusIcon::Eyes::looking:
        // Both pupils turned the same way, as if watching something aside.
        fillDot(context, {eye.x + lookingTurn, eye.y + 0.3}, eyeRadius - 0.1);
        break;
      case StatusIcon::Eyes::closed:
        CGContextSetLineWidth(context, 1.1);
        CGContextSetLineCap(context, kCGLineCapRound);
        CGContextAddArc(context, eye.x, eye.y + 0.8, 1.6, std::numbers::pi + 0.3,
                        2 * std::numbers::pi - 0.3, 0);
        CGContextStrokePath(context);
        break;
    }
  }
}

void drawIcon(CGContextRef context, StatusIcon::Eyes eyes, int ears) {
  CGContextSetGrayFillColor(context, 0, 1);
  CGContextSetGrayStrokeColor(context, 0, 1);
  auto earOutline = earsPath(ears, iconEars);
  CGContextAddPath(context, earOutline.get());
  CGContextFillPath(context);

  // The ears' roots inside the face are wiped, so the face stays an outline.
  const CGRect face = CGRectMake(faceCenter.x - faceRadius, faceCenter.y - faceRadius,
                                 2 * faceRadius, 2 * faceRadius);
  CGContextSetBlendMode(context, kCGBlendModeClear);
  CGContextFillEllipseInRect(context, face);
  CGContextSetBlendMode(context, kCGBlendModeNormal);
  CGContextSetLineWidth(context, outlineWidth);
  CGContextStrokeEllipseInRect(context, face);

  drawEyes(context, eyes);
}

}  // namespace

CFHolder<CGPathRef> earsPath(int ears, EarPlacement placement) {
  Outline outline;
  const Ears kind = lookFrom<PillEars>(ears);
  const CGFloat h = placement.height;
  const CGAffineTransform atTop =
      CGAffineTransformMakeTranslation(placement.headTop.x, placement.headTop.y);
  if (kind == Ears::unicorn) {
    addEar(outline, kind, CGAffineTransformScale(atTop, h, h));
    return outline.take();
  }
  for (CGFloat side : {-1.0, 1.0}) {
    const CGAffineTransform place = CGAffineTransformScale(
        CGAffineTransformTranslate(atTop, side * placement.spread, 0), side * h, h);
    addEar(outline, kind, place);
  }
  return outline.take();
}

NSImage* statusIconImage(StatusIcon::Eyes eyes, int ears) {
  NSImage* image = [NSImage imageWithSize:NSMakeSize(iconSide, iconSide)
                                  flipped:NO
                           drawingHandler:^BOOL(NSRect) {
                             CGContextRef context = NSGraphicsContext.currentContext.CGContext;
                             if (!context) return NO;
                             drawIcon(context, eyes, ears);
                             return YES;
                           }];
  // A template image takes the menu bar's colour and the item's tint.
  [image setTemplate:YES];
  return image;
}

}  // namespace sodam
