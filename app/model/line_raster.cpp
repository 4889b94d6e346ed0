#include "app/model/line_raster.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <variant>

#include "geometry/outline/outline.h"
#include "ktscene/kt_run_code.h"

namespace dxf2d {
namespace {

// Each way.
constexpr double kMostCells = 2048.0;

std::size_t cellsAcross(double size, double cell) {
  return static_cast<std::size_t>(std::floor(size / cell)) + 1;
}

}  // namespace

LineRaster::LineRaster(const KtScene& scene, const PlanExtent& extent, double cell) {
  const double sizeX = extent.maxX - extent.minX;
  const double sizeY = extent.maxY - extent.minY;
  const double larger = std::max(sizeX, sizeY);
  if (extent.IsEmpty() || !std::isfinite(larger)) {
    return;
  }
  corner_ = {extent.minX, extent.minY};
  cell_ = std::max(cell, larger / kMostCells);
  columns_ = cellsAcross(sizeX, cell_);
  rows_ = cellsAcross(sizeY, cell_);
  counts_.assign(columns_ * rows_, 0);
  for (const KtSceneNode& node : scene.nodes) {
    AddNode(node);
  }
  Sum();
}

void LineRaster::AddNode(const KtSceneNode& node) {
  for (const KtSceneNode& leaf : node.children) {
    for (const KtSceneGeometry& item : leaf.geometry) {
      if (const auto* lines = std::get_if<std::shared_ptr<const KtLineSet>>(&item)) {
        AddRuns((*lines)->coords, (*lines)->indices, node.matrix);
      } else if (const auto* faces = std::get_if<std::shared_ptr<const KtFaceSet>>(&item)) {
        AddOutline(**faces, node.matrix);
      }
    }
  }
}

void LineRaster::AddOutline(const KtFaceSet& faces, const KtMatrix& matrix) {
  std::vector<KtPoint3> points;
  std::vector<int> outline;
  if (!BuildOutline({faces.coords, matrix}, faces.indices, points, outline,
                    faces.reverseOrientation, faces.closedSurface)) {
    return;
  }
  std::vector<double> coords;
  coords.reserve(3 * points.size());
  for (const KtPoint3& point : points) {
    coords.insert(coords.end(), {point.Get0(), point.Get1(), point.Get2()});
  }
  AddRuns(coords, outline, KtMatrix());
}

// The runs of a line set are line strips, whatever their codes.
void LineRaster::AddRuns(const std::vector<double>& coords, const std::vector<int>& indices,
                         const KtMatrix& matrix) {
  const PlacedCoords placed{coords, matrix};
  for (std::size_t i = 1; i < indices.size(); ++i) {
    if (indices[i - 1] >= 0 && indices[i] >= 0) {
      AddLine(placed.At(static_cast<std::size_t>(indices[i - 1])),
              placed.At(static_cast<std::size_t>(indices[i])));
    }
  }
}

void LineRaster::AddLine(const KtPoint3& from, const KtPoint3& to) {
  if (!isFinite(from) || !isFinite(to)) {
    return;
  }
  const double alongX = to.Get0() - from.Get0();
  const double alongY = to.Get1() - from.Get1();
  // Two to a cell. Lines lie within the extent, so that there are few.
  constexpr double kMostSteps = 4 * kMostCells;
  const auto steps = static_cast<int>(
      std::min(std::ceil(2.0 * std::max(std::abs(alongX), std::abs(alongY)) / cell_), kMostSteps));
  for (int step = 0; step <= steps; ++step) {
    const double share = steps > 0 ? static_cast<double>(step) / steps : 0.0;
    const std::size_t column = CellOf(from.Get0() + share * alongX - corner_[0], columns_);
    const std::size_t row = CellOf(from.Get1() + share * alongY - corner_[1], rows_);
    counts_[row * columns_ + column] = 1;
  }
}

std::size_t LineRaster::CellOf(double offset, std::size_t count) const {
  return static_cast<std::size_t>(
      std::clamp(std::floor(offset / cell_), 0.0, static_cast<double>(count - 1)));
}

void LineRaster::Sum() {
  for (std::size_t row = 0; row < rows_; ++row) {
    std::uint32_t sum = 0;
    for (std::size_t column = 0; column < columns_; ++column) {
      std::uint32_t& count = counts_[row * columns_ + column];
      sum += count;
      count = sum + (row > 0 ? counts_[(row - 1) * columns_ + column] : 0);
    }
  }
}

bool LineRaster::Holds(const PlanExtent& box) const {
  return box.minX >= corner_[0] && box.minY >= corner_[1] &&
         box.maxX <= corner_[0] + cell_ * static_cast<double>(columns_) &&
         box.maxY <= corner_[1] + cell_ * static_cast<double>(rows_);
}

std::size_t LineRaster::CountIn(const PlanExtent& box) const {
  const double right = box.maxX - corner_[0];
  const double top = box.maxY - corner_[1];
  if (counts_.empty() || right < 0.0 || top < 0.0) {
    return 0;
  }
  // Of the cells up to the given one, each way.
  const auto upTo = [&](std::size_t column, std::size_t row) {
    return counts_[row * columns_ + column];
  };
  const std::size_t lastColumn = CellOf(right, columns_);
  const std::size_t lastRow = CellOf(top, rows_);
  const std::size_t column = CellOf(box.minX - corner_[0], columns_);
  const std::size_t row = CellOf(box.minY - corner_[1], rows_);
  const std::size_t left = column > 0 ? upTo(column - 1, lastRow) : 0;
  const std::size_t below = row > 0 ? upTo(lastColumn, row - 1) : 0;
  const std::size_t both = column > 0 && row > 0 ? upTo(column - 1, row - 1) : 0;
  return upTo(lastColumn, lastRow) + both - left - below;
}

}  // namespace dxf2d
