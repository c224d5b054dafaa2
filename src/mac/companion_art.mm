#include "mac/companion_art.h"

#include <cmath>
#include <numbers>

#include "mac/cf_holder.h"
#include "mac/companion_geometry.h"
#include "mac/pill_views.h"

namespace sodam {

namespace {

constexpr CGFloat pi = std::numbers::pi;

// The colours of the things the companion wears.
constexpr LookColor pink{255, 120, 165};
constexpr LookColor deepPink{225, 70, 120};
constexpr LookColor petal{255, 196, 220};
constexpr LookColor yolk{255, 212, 76};
constexpr LookColor red{236, 64, 80};
constexpr LookColor leaf{112, 200, 92};
constexpr LookColor stem{78, 156, 70};
constexpr LookColor graphite{72, 72, 84};
constexpr LookColor sky{124, 200, 255};
constexpr LookColor gold{255, 200, 64};
constexpr LookColor wine{186, 42, 72};
constexpr LookColor snow{250, 250, 252};
constexpr LookColor mist{232, 242, 255};
constexpr LookColor midnight{72, 62, 172};
constexpr LookColor brown{120, 78, 50};
constexpr LookColor shade{28, 28, 36};

void setFill(CGContextRef context, LookColor color, CGFloat alpha = 1) {
  CGContextSetFillColorWithColor(context, lookNSColor(color, alpha).CGColor);
}

void setStroke(CGContextRef context, LookColor color, CGFloat width, CGFloat alpha = 1) {
  CGContextSetStrokeColorWithColor(context, lookNSColor(color, alpha).CGColor);
  CGContextSetLineWidth(context, width);
  CGContextSetLineCap(context, kCGLineCapRound);
  CGContextSetLineJoin(context, kCGLineJoinRound);
}

void fillEllipse(CGContextRef context, CGPoint center, CGFloat rx, CGFloat ry) {
  CGContextFillEllipseInRect(context, CGRectMake(center.x - rx, center.y - ry, 2 * rx, 2 * ry));
}

void fillPolygon(CGContextRef context, std::initializer_list<CGPoint> points) {
  CGContextAddLines(context, points.begin(), points.size());
  CGContextClosePath(context);
  CGContextFillPath(context);
}

void addStar(CGMutablePathRef path, CGPoint center, CGFloat outer, CGFloat inner, int tips) {
  for (int i = 0; i < 2 * tips; ++i) {
    const CGFloat radius = i % 2 == 0 ? outer : inner;
    const CGFloat angle = pi / 2 + i * pi / tips;
    const CGPoint point{center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
    if (i == 0) {
      CGPathMoveToPoint(path, nullptr, point.x, point.y);
    } else {
      CGPathAddLineToPoint(path, nullptr, point.x, point.y);
    }
  }
  CGPathCloseSubpath(path);
}

void fillPath(CGContextRef context, CGPathRef path) {
  CGContextAddPath(context, path);
  CGContextFillPath(context);
}

void fillStar(CGContextRef context, CGPoint center, CGFloat outer, CGFloat inner, int tips = 5) {
  auto path = adopt(CGPathCreateMutable());
  addStar(path.get(), center, outer, inner, tips);
  fillPath(context, path.get());
}

void fillHeart(CGContextRef context, CGPoint center, CGFloat size) {
  auto path = adopt(CGPathCreateMutable());
  addHeartPath(path.get(), center, size);
  fillPath(context, path.get());
}

void flower(CGContextRef context, CGPoint center, CGFloat petalRadius, LookColor colour) {
  setFill(context, colour);
  for (int i = 0; i < 5; ++i) {
    const CGFloat angle = pi / 2 + i * 2 * pi / 5;
    fillEllipse(context,
                {center.x + 1.1 * petalRadius * std::cos(angle),
                 center.y + 1.1 * petalRadius * std::sin(angle)},
                petalRadius, petalRadius);
  }
  setFill(context, yolk);
  fillEllipse(context, center, 0.8 * petalRadius, 0.8 * petalRadius);
}

// A cone from its base to its tip, a little bent, the way a soft hat falls.
void fillCone(CGContextRef context, CGFloat left, CGFloat right, CGFloat base, CGPoint tip) {
  CGContextMoveToPoint(context, left, base);
  CGContextAddQuadCurveToPoint(context, (left + tip.x) / 2 - 1, (base + tip.y) / 2 + 1, tip.x,
                               tip.y);
  CGContextAddQuadCurveToPoint(context, (right + tip.x) / 2 + 1, (base + tip.y) / 2, right, base);
  CGContextClosePath(context);
  CGContextFillPath(context);
}

// Each trim in its box, with y up from the box's bottom edge.
void drawTrim(CGContextRef c, PillTrim trim, CGSize box) {
  const CGFloat w = box.width;
  const CGFloat h = box.height;
  const CGFloat mid = w / 2;
  switch (trim) {
    case PillTrim::none:
      return;
    case PillTrim::ribbon:
      setFill(c, pink);
      fillPolygon(c, {{mid, h * 0.5}, {0, h}, {0, 1}});
      fillPolygon(c, {{mid, h * 0.5}, {w, h}, {w, 1}});
      setFill(c, deepPink);
      return fillEllipse(c, {mid, h * 0.5}, 2.2, 2.2);
    case PillTrim::flower:
      return flower(c, {mid, h * 0.5}, 2.6, petal);
    case PillTrim::heart:
      setFill(c, red);
      return fillHeart(c, {mid, h * 0.52}, w * 0.95);
    case PillTrim::sprout:
      setStroke(c, stem, 1.4);
      CGContextMoveToPoint(c, mid, 0);
      CGContextAddLineToPoint(c, mid, h * 0.6);
      CGContextStrokePath(c);
      setFill(c, leaf);
      fillEllipse(c, {mid - 3, h * 0.7}, 3, 1.8);
      return fillEllipse(c, {mid + 3, h * 0.78}, 3, 1.8);
    case PillTrim::headphones:
      setStroke(c, graphite, 2.4);
      CGContextAddArc(c, mid, 3, mid - 3, pi * 0.05, pi * 0.95, 0);
      CGContextStrokePath(c);
      setFill(c, red);
      CGContextFillRect(c, CGRectMake(0, 0, 6, 9));
      return CGContextFillRect(c, CGRectMake(w - 6, 0, 6, 9));
    case PillTrim::party:
      setFill(c, sky);
      fillCone(c, 0, w, 0, {mid + 1, h - 3});
      setFill(c, yolk);
      fillEllipse(c, {mid - 1, h * 0.35}, 1.3, 1.3);
      fillEllipse(c, {mid + 2, h * 0.55}, 1.1, 1.1);
      setFill(c, pink);
      return fillEllipse(c, {mid + 1, h - 2.5}, 2.5, 2.5);
    case PillTrim::star:
      setFill(c, yolk);
      return fillStar(c, {mid, h * 0.5}, h * 0.5, h * 0.22);
    case PillTrim::flowerCrown:
      setFill(c, leaf);
      CGContextFillRect(c, CGRectMake(2, 1, w - 4, 2));
      for (int i = 0; i < 5; ++i) {
        const LookColor colours[] = {petal, yolk, snow};
        flower(c, {4 + i * (w - 8) / 4, h * 0.5}, 1.7, colours[i % 3]);
      }
      return;
    case PillTrim::crown:
      setFill(c, gold);
      fillPolygon(
          c,
          {{1, 0}, {w - 1, 0}, {w, h}, {w * 0.75, h * 0.5}, {mid, h}, {w * 0.25, h * 0.5}, {0, h}});
      setFill(c, red);
      return fillEllipse(c, {mid, h * 0.3}, 1.6, 1.6);
    case PillTrim::beret:
      setFill(c, wine);
      CGContextSaveGState(c);
      CGContextTranslateCTM(c, mid, h * 0.45);
      CGContextRotateCTM(c, 0.12);
      fillEllipse(c, {0, 0}, mid, h * 0.4);
      CGContextRestoreGState(c);
      return CGContextFillRect(c, CGRectMake(mid + 1, h * 0.75, 1.6, h * 0.25));
    case PillTrim::chef:
      setFill(c, snow);
      CGContextFillRect(c, CGRectMake(w * 0.18, 0, w * 0.64, h * 0.45));
      fillEllipse(c, {w * 0.3, h * 0.65}, w * 0.2, w * 0.2);
      fillEllipse(c, {w * 0.7, h * 0.65}, w * 0.2, w * 0.2);
      fillEllipse(c, {mid, h * 0.75}, w * 0.24, w * 0.22);
      setStroke(c, graphite, 0.8, 0.5);
      CGContextMoveToPoint(c, w * 0.18, h * 0.45);
      CGContextAddLineToPoint(c, w * 0.82, h * 0.45);
      return CGContextStrokePath(c);
    case PillTrim::halo:
      setStroke(c, gold, 2);
      return CGContextStrokeEllipseInRect(c, CGRectMake(1, 1, w - 2, h - 2));
    case PillTrim::cloud:
      setFill(c, mist);
      fillEllipse(c, {w * 0.3, h * 0.4}, w * 0.2, h * 0.32);
      fillEllipse(c, {w * 0.55, h * 0.58}, w * 0.24, h * 0.4);
      fillEllipse(c, {w * 0.76, h * 0.38}, w * 0.2, h * 0.3);
      return CGContextFillRect(c, CGRectMake(w * 0.3, 0.5, w * 0.46, h * 0.35));
    case PillTrim::wizard:
      setFill(c, midnight);
      fillCone(c, w * 0.12, w * 0.88, 2, {mid + 3, h});
      fillEllipse(c, {mid, 2}, mid, 2);
      setFill(c, yolk);
      fillStar(c, {mid - 1, h * 0.45}, 2.2, 0.9);
      return fillStar(c, {mid + 2, h * 0.7}, 1.5, 0.6);
    case PillTrim::santa:
      setFill(c, red);
      fillCone(c, w * 0.1, w * 0.85, 2, {w - 3, h * 0.75});
      setFill(c, snow);
      CGContextFillRect(c, CGRectMake(w * 0.05, 0, w * 0.85, 4));
      return fillEllipse(c, {w - 3, h * 0.75}, 2.6, 2.6);
  }
}

// Each face over the character's eyes; `c` is the middle between them.
void drawFace(CGContextRef context, PillFace face, CGPoint c, CGFloat apart) {
  switch (face) {
    case PillFace::none:
      return;
    case PillFace::blush:
      setFill(context, pink, 0.55);
      fillEllipse(context, {c.x - apart - 7, c.y - 6}, 4.5, 2.4);
      return fillEllipse(context, {c.x + apart + 7, c.y - 6}, 4.5, 2.4);
    case PillFace::hearts:
      setFill(context, pink, 0.9);
      fillHeart(context, {c.x - apart - 8, c.y - 6}, 6);
      return fillHeart(context, {c.x + apart + 8, c.y - 6}, 6);
    case PillFace::glasses:
      setStroke(context, snow, 1.4, 0.85);
      CGContextStrokeEllipseInRect(context, CGRectMake(c.x - apart - 7.5, c.y - 7.5, 15, 15));
      CGContextStrokeEllipseInRect(context, CGRectMake(c.x + apart - 7.5, c.y - 7.5, 15, 15));
      CGContextMoveToPoint(context, c.x - apart + 7.5, c.y + 1);
      CGContextAddLineToPoint(context, c.x + apart - 7.5, c.y + 1);
      return CGContextStrokePath(context);
    case PillFace::whiskers:
      setStroke(context, snow, 0.9, 0.7);
      for (CGFloat side : {-1.0, 1.0}) {
        for (CGFloat tilt : {-2.0, 0.0, 2.0}) {
          CGContextMoveToPoint(context, c.x + side * (apart + 9), c.y - 5);
          CGContextAddLineToPoint(context, c.x + side * (apart + 19), c.y - 5 + tilt);
        }
      }
      return CGContextStrokePath(context);
    case PillFace::sunglasses:
      setFill(context, shade, 0.95);
      for (CGFloat side : {-1.0, 1.0}) {
        CGContextAddPath(
            context, adopt(CGPathCreateWithRoundedRect(
                               CGRectMake(c.x + side * apart - 8, c.y - 6, 16, 12), 4, 4, nullptr))
                         .get());
        CGContextFillPath(context);
      }
      CGContextFillRect(context, CGRectMake(c.x - apart + 8, c.y + 2, 2 * apart - 16, 2));
      setStroke(context, snow, 1, 0.6);  // a glint, so the lenses read as glass
      CGContextMoveToPoint(context, c.x - apart - 5, c.y + 3);
      CGContextAddLineToPoint(context, c.x - apart - 2, c.y + 3);
      return CGContextStrokePath(context);
    case PillFace::mustache:
      setFill(context, brown);
      fillEllipse(context, {c.x - 3.5, c.y - 9}, 4, 1.8);
      fillEllipse(context, {c.x + 3.5, c.y - 9}, 4, 1.8);
      fillEllipse(context, {c.x - 7.5, c.y - 8}, 1.5, 1.5);
      return fillEllipse(context, {c.x + 7.5, c.y - 8}, 1.5, 1.5);
    case PillFace::sparkle:
      setFill(context, yolk);
      fillStar(context, {c.x - apart - 10, c.y + 7}, 3.2, 0.8, 4);
      fillStar(context, {c.x + apart + 10, c.y + 8}, 2.4, 0.6, 4);
      return fillStar(context, {c.x + apart + 14, c.y - 5}, 1.8, 0.5, 4);
  }
}

// Light marks on the body: their colour lifts the body's own a little.
void drawPattern(CGContextRef context, PillPattern pattern, CGSize size) {
  setFill(context, snow, 0.14);
  setStroke(context, snow, 2.4, 0.12);
  const Size area{size.width, size.height};
  switch (pattern) {
    case PillPattern::none:
      return;
    case PillPattern::dots:
      for (const Point spot : patternSpots(area, 8))
        fillEllipse(context, {spot.x, spot.y}, 1.6, 1.6);
      return;
    case PillPattern::stripes:
      for (CGFloat x = -size.height; x < size.width; x += 7) {
        CGContextMoveToPoint(context, x, 0);
        CGContextAddLineToPoint(context, x + size.height, size.height);
      }
      return CGContextStrokePath(context);
    case PillPattern::stars:
      for (const Point spot : patternSpots(area, 11))
        fillStar(context, {spot.x, spot.y}, 2.6, 1.1);
      return;
    case PillPattern::hearts:
      for (const Point spot : patternSpots(area, 11))
        fillHeart(context, {spot.x, spot.y}, 4.5);
      return;
    case PillPattern::checker:
      for (int row = 0; row * 6 < size.height; ++row) {
        for (int column = row % 2; column * 6 < size.width; column += 2)
          CGContextFillRect(context, CGRectMake(column * 6, row * 6, 6, 6));
      }
      return;
  }
}

CALayer* drawnLayer(CGSize size, CGFloat scale, void (^draw)(CGContextRef context)) {
  return imageLayer(size, scale, NO, ^(NSRect) {
    if (CGContextRef context = NSGraphicsContext.currentContext.CGContext) draw(context);
  });
}

}  // namespace

NSColor* lookNSColor(LookColor color, CGFloat alpha) {
  return [NSColor colorWithSRGBRed:color.red / 255.0
                             green:color.green / 255.0
                              blue:color.blue / 255.0
                             alpha:alpha];
}

void addHeartPath(CGMutablePathRef path, CGPoint c, CGFloat size) {
  const CGPoint tip{c.x, c.y - 0.45 * size};
  const CGPoint notch{c.x, c.y + 0.2 * size};
  const CGFloat lobeOut = 0.6 * size;
  const CGFloat lobeTop = 0.5 * size;
  CGPathMoveToPoint(path, nullptr, tip.x, tip.y);
  CGPathAddCurveToPoint(path, nullptr, c.x - lobeOut, c.y - 0.05 * size, c.x - lobeTop,
                        c.y + lobeTop, notch.x, notch.y);
  CGPathAddCurveToPoint(path, nullptr, c.x + lobeTop, c.y + lobeTop, c.x + lobeOut,
                        c.y - 0.05 * size, tip.x, tip.y);
  CGPathCloseSubpath(path);
}

CALayer* makePatternLayer(PillPattern pattern, CGSize size, CGFloat scale) {
  if (pattern == PillPattern::none) return nil;
  CALayer* layer = drawnLayer(size, scale, ^(CGContextRef context) {
    drawPattern(context, pattern, size);
  });
  layer.cornerRadius = std::min(size.width, size.height) / 2;
  layer.masksToBounds = YES;
  return layer;
}

CALayer* makeTrimLayer(PillTrim trim, CGFloat scale) {
  if (trim == PillTrim::none) return nil;
  const TrimBox box = trimBox(trim);
  const CGSize size{box.width, box.height};
  return drawnLayer(size, scale, ^(CGContextRef context) {
    drawTrim(context, trim, size);
  });
}

CALayer* makeFaceLayer(PillFace face, CGSize size, CGFloat eyeApart, CGFloat scale) {
  if (face == PillFace::none) return nil;
  return drawnLayer(size, scale, ^(CGContextRef context) {
    drawFace(context, face, {size.width / 2, size.height / 2}, eyeApart);
  });
}

CALayer* makeColouredEyes(CGPathRef fills, CGPathRef strokes, CGFloat lineWidth, PillEyeColor color,
                          CGSize size, CGFloat scale) {
  const CGRect bounds = CGRectMake(0, 0, size.width, size.height);
  CAGradientLayer* colour = [CAGradientLayer layer];
  colour.frame = bounds;
  NSMutableArray* stops = [NSMutableArray array];
  for (const LookColor stop : eyeColors(color))
    [stops addObject:(__bridge id)lookNSColor(stop).CGColor];
  colour.colors = stops;
  // From the top of the eyes to their bottom; a layer's y grows upwards.
  colour.startPoint = CGPointMake(0.5, 0.75);
  colour.endPoint = CGPointMake(0.5, 0.25);

  CALayer* shapes = [CALayer layer];
  shapes.frame = bounds;
  CAShapeLayer* filled = [CAShapeLayer layer];
  filled.frame = bounds;
  filled.path = fills;
  filled.fillColor = NSColor.blackColor.CGColor;
  CAShapeLayer* stroked = [CAShapeLayer layer];
  stroked.frame = bounds;
  stroked.path = strokes;
  stroked.fillColor = nil;
  stroked.strokeColor = NSColor.blackColor.CGColor;
  stroked.lineWidth = lineWidth;
  stroked.lineCap = kCALineCapRound;
  stroked.lineJoin = kCALineJoinRound;
  for (CAShapeLayer* layer in @[ filled, stroked ]) {
    layer.contentsScale = scale;
    [shapes addSublayer:layer];
  }
  colour.mask = shapes;
  colour.contentsScale = scale;
  return colour;
}

}  // namespace sodam
