// The faces of a shape as triangles, and its edges as lines.
#pragma once

#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <cstddef>
#include <functional>
#include <optional>

#include "importers/step/glb.h"

namespace dxf2d::step {

struct Division {
  // How far triangles may be from their faces, in the unit of the shape.
  double distance;
  // The largest angle, in radians, between adjacent triangles of a curved face.
  double angle;
  // The unit of the result, in units of the shape.
  double unit;
};

struct ShapeMesh {
  // Triangles by color, then lines.
  glb::Mesh mesh;
  // Faces that could not be triangulated.
  std::size_t lostFaces = 0;
};

// Joins the edges at which faces meet within `distance`. `onReplaced` is called for each face that
// is replaced by another.
TopoDS_Shape sewn(
    const TopoDS_Shape& shape, double distance,
    const std::function<void(const TopoDS_Face& face, const TopoDS_Face& other)>& onReplaced);

// Triangulates the shape: neighboring faces share the points of their common edge, bit for bit, so
// that they can be joined again. The lines are its true edges: those at which faces meet at an
// angle, and those that belong to no face; but neither seams of closed faces, nor tangent edges,
// nor borders, which show anyway. `colorOf` returns the color of a face that has one of its own;
// everything else has `color`.
ShapeMesh meshShape(const TopoDS_Shape& shape, const Division& division,
                    const std::function<std::optional<glb::Color>(const TopoDS_Face&)>& colorOf,
                    const std::optional<glb::Color>& color);

}  // namespace dxf2d::step
