// Where the lines of a plan run, so that labels can stand off them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "app/model/plan_extent.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"
#include "ktscene/kt_scene.h"

namespace dxf2d {

// A raster of square cells, each of which a line runs through or not.
class LineRaster {
 public:
  // Runs nowhere.
  LineRaster() = default;
  // The lines of the scene's nodes within `extent`: line sets as they stand, of face sets their
  // outlines. Cells are `cell` wide, in drawing units, or as much wider as makes them few.
  LineRaster(const KtScene& scene, const PlanExtent& extent, double cell);

  // Whether the box is within the raster.
  bool Holds(const PlanExtent& box) const;
  // How many cells that the box touches have a line. Of a box beyond the raster, the nearest cells
  // count.
  std::size_t CountIn(const PlanExtent& box) const;

 private:
  void AddNode(const KtSceneNode& node);
  void AddOutline(const KtFaceSet& faces, const KtMatrix& matrix);
  void AddRuns(const std::vector<double>& coords, const std::vector<int>& indices,
               const KtMatrix& matrix);
  void AddLine(const KtPoint3& from, const KtPoint3& to);
  // Replaces the mark of each cell by the number of marks up to it, each way.
  void Sum();
  // The column or row of an offset from the extent's lower corner; the nearest of `count`.
  std::size_t CellOf(double offset, std::size_t count) const;

  std::array<double, 2> corner_{};
  double cell_ = 1.0;
  std::size_t columns_ = 0;
  std::size_t rows_ = 0;
  // By row, then column.
  std::vector<std::uint32_t> counts_;
};

}  // namespace dxf2d
