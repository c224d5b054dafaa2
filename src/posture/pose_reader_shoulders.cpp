#include <algorithm>
#include <array>

#include "posture/pose_reader_steps.h"

namespace sodam::pose_steps {

namespace {

using TorsoRun = PoseReader::TorsoRun;

// Distances from the face's centre, in face widths, at which the silhouette
// is walked down on each side.
constexpr std::array<double, 4> walkOffsets{0.9, 1.1, 1.3, 1.5};

// From a background pixel at `row`, walks down the column until the person
// begins; nothing when the column starts on the person or never meets it.
std::optional<int> walkDown(const Mask& mask, int column, int row) {
  if (column < 0 || column >= mask.width || mask.isPerson(column, row)) return std::nullopt;
  for (int r = row + 1; r < mask.height; ++r) {
    if (mask.isPerson(column, r)) return r;
  }
  return std::nullopt;
}

struct SidePoints {
  double columns = 0;
  double rows = 0;
  int count = 0;
  void add(int column, int row) {
    columns += column;
    rows += row;
    ++count;
  }
  Point mean(const MaskGrid& grid) const {
    return {grid.imageX(columns / count), grid.imageY(rows / count)};
  }
};

std::optional<double> headTop(const Mask& mask, int column, int faceRow) {
  if (column < 0 || column >= mask.width) return std::nullopt;
  for (int r = 0; r < faceRow; ++r) {
    if (mask.isPerson(column, r)) return r;
  }
  return std::nullopt;
}

struct TorsoWidth {
  double width = 0;
  double y = 0;
};

// The torso is measured at the first row that nearly reaches the widest one;
// an arm or the frame's edge makes that row worthless, and then there is none.
std::optional<TorsoWidth> torsoWidth(const MaskGrid& grid, Rect face, int topRow,
                                     std::vector<TorsoRun>& runs) {
  const Mask& mask = grid.mask;
  const int span = static_cast<int>(1.8 * face.size.height * mask.height);
  const int lastRow = std::min(mask.height - 1, topRow + span);
  if (lastRow - topRow + 1 < 9) return std::nullopt;

  const int centre = std::clamp(grid.columnOf(face.midX()), 0, mask.width - 1);
  runs.clear();
  int maxWidth = 0;
  for (int row = topRow; row <= lastRow; ++row) {
    if (auto run = mask.runThrough(centre, row)) {
      runs.push_back({row, run->lo, run->hi});
      maxWidth = std::max(maxWidth, run->hi - run->lo);
    }
  }
  const int n = static_cast<int>(runs.size());
  if (n <= 8) return std::nullopt;
  const auto chosen = std::find_if(
      runs.begin(), runs.end(), [&](const TorsoRun& r) { return r.hi - r.lo >= 0.92 * maxWidth; });
  const int index = static_cast<int>(chosen - runs.begin());
  const bool inLastEighth = index >= n - std::max(n, 24) / 8;
  const bool touchesEdge = chosen->lo <= 0 || chosen->hi >= mask.width - 1;
  const bool narrowerThanHead = 1.8 * face.size.width * mask.width >= maxWidth;
  if (inLastEighth || touchesEdge || narrowerThanHead) return std::nullopt;
  return TorsoWidth{(chosen->hi - chosen->lo) * grid.pixelsPerColumn(), grid.imageY(chosen->row)};
}

}  // namespace

std::optional<PoseReader::LastShoulders> shoulders(const Mask& mask, Rect face, Size size,
                                                   std::vector<TorsoRun>& runs) {
  const MaskGrid grid{mask, size};
  const int y0 = grid.rowOf(face.minY());
  if (y0 < 0 || y0 + 4 >= mask.height) return std::nullopt;

  SidePoints left, right;
  for (double k : walkOffsets) {
    const int leftColumn = grid.columnOf(face.midX() - k * face.size.width);
    const int rightColumn = grid.columnOf(face.midX() + k * face.size.width);
    const auto leftRow = walkDown(mask, leftColumn, y0);
    const auto rightRow = walkDown(mask, rightColumn, y0);
    if (!leftRow || !rightRow) continue;  // only both sides together count
    left.add(leftColumn, *leftRow);
    right.add(rightColumn, *rightRow);
  }
  if (left.count < 2) return std::nullopt;

  PoseReader::LastShoulders found;
  found.face = face;
  found.left = left.mean(grid);
  found.right = right.mean(grid);
  if (auto top = headTop(mask, grid.columnOf(face.midX()), y0)) found.top = grid.imageY(*top);
  if (auto torso = torsoWidth(grid, face, y0, runs)) {
    found.width = torso->width;
    found.widthY = torso->y;
  }
  return found;
}

}  // namespace sodam::pose_steps
