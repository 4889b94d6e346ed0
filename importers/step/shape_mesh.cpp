#include "importers/step/shape_mesh.h"

#include <BRepBuilderAPI_Sewing.hxx>
#include <BRepLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <bit>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>

namespace dxf2d::step {
namespace {

// Faces that meet at less than this, in radians, are tangent to each other. Files give tangents
// to a few digits only.
constexpr double kSmooth = 0.035;

using PointKey = std::array<float, 3>;

struct PointHash {
  std::size_t operator()(const PointKey& point) const {
    std::uint64_t hash = 0;
    for (const float c : point) {
      hash = (hash ^ std::bit_cast<std::uint32_t>(c)) * 0x9e3779b97f4a7c15U;
      hash ^= hash >> 29U;
    }
    return hash;
  }
};

// Collects a primitive; each point once.
class Collector {
 public:
  Collector(glb::Primitive::Kind kind, std::optional<glb::Color> color, double unit) : unit_(unit) {
    primitive_.kind = kind;
    primitive_.color = color;
  }

  void Add(const gp_Pnt& point) {
    // A zero has one sign, so that equal points are equal in every bit.
    const PointKey key = {static_cast<float>(point.X() / unit_) + 0.0F,
                          static_cast<float>(point.Y() / unit_) + 0.0F,
                          static_cast<float>(point.Z() / unit_) + 0.0F};
    const auto [known, isNew] =
        numbers_.emplace(key, static_cast<std::uint32_t>(primitive_.points.size()));
    if (isNew) {
      primitive_.points.push_back(key);
    }
    primitive_.indices.push_back(known->second);
  }
  glb::Primitive Take() { return std::move(primitive_); }

 private:
  double unit_;
  glb::Primitive primitive_;
  std::unordered_map<PointKey, std::uint32_t, PointHash> numbers_;
};

using CollectorsByColor = std::map<std::optional<glb::Color>, Collector>;

// Returns whether the face has triangles.
bool addFace(const TopoDS_Face& face, Collector& triangles) {
  TopLoc_Location location;
  const auto triangulation = BRep_Tool::Triangulation(face, location);
  if (triangulation.IsNull()) {
    return false;
  }
  const gp_Trsf place = location.Transformation();
  // A mirror image turns triangles over, as an inverted face does.
  const bool isReversed = (face.Orientation() == TopAbs_REVERSED) != place.IsNegative();
  for (int i = 1; i <= triangulation->NbTriangles(); ++i) {
    std::array<int, 3> corners{};
    triangulation->Triangle(i).Get(corners[0], corners[1], corners[2]);
    if (isReversed) {
      std::swap(corners[1], corners[2]);
    }
    for (const int corner : corners) {
      triangles.Add(triangulation->Node(corner).Transformed(place));
    }
  }
  return true;
}

// The points of an edge; none when it has not been triangulated.
std::vector<gp_Pnt> pointsOf(const TopoDS_Edge& edge) {
  std::vector<gp_Pnt> points;
  TopLoc_Location location;
  Handle(Poly_PolygonOnTriangulation) polygon;
  Handle(Poly_Triangulation) triangulation;
  BRep_Tool::PolygonOnTriangulation(edge, polygon, triangulation, location);
  if (!polygon.IsNull() && !triangulation.IsNull()) {
    for (int i = 1; i <= polygon->NbNodes(); ++i) {
      points.push_back(
          triangulation->Node(polygon->Node(i)).Transformed(location.Transformation()));
    }
    return points;
  }
  const auto polyline = BRep_Tool::Polygon3D(edge, location);
  if (!polyline.IsNull()) {
    for (const gp_Pnt& point : polyline->Nodes()) {
      points.push_back(point.Transformed(location.Transformation()));
    }
  }
  return points;
}

bool isTrueEdge(const TopoDS_Edge& edge, const TopTools_ListOfShape& faces) {
  if (BRep_Tool::Degenerated(edge)) {
    return false;
  }
  if (faces.Size() != 2) {
    // The borders of faces show by themselves; more than two make an edge whatever their angles.
    return faces.Size() != 1;
  }
  const TopoDS_Face& first = TopoDS::Face(faces.First());
  const TopoDS_Face& second = TopoDS::Face(faces.Last());
  const bool isSeam = first.IsSame(second);
  const bool isSmooth = BRep_Tool::HasContinuity(edge, first, second) &&
                        BRep_Tool::Continuity(edge, first, second) != GeomAbs_C0;
  return !isSeam && !isSmooth;
}

void addEdges(const TopoDS_Shape& shape, Collector& lines) {
  TopTools_IndexedDataMapOfShapeListOfShape facesOfEdges;
  TopExp::MapShapesAndAncestors(shape, TopAbs_EDGE, TopAbs_FACE, facesOfEdges);
  for (int i = 1; i <= facesOfEdges.Extent(); ++i) {
    const TopoDS_Edge& edge = TopoDS::Edge(facesOfEdges.FindKey(i));
    if (!isTrueEdge(edge, facesOfEdges.FindFromIndex(i))) {
      continue;
    }
    const std::vector<gp_Pnt> points = pointsOf(edge);
    for (std::size_t next = 1; next < points.size(); ++next) {
      lines.Add(points[next - 1]);
      lines.Add(points[next]);
    }
  }
}

}  // namespace

TopoDS_Shape sewn(
    const TopoDS_Shape& shape, double distance,
    const std::function<void(const TopoDS_Face& face, const TopoDS_Face& other)>& onReplaced) {
  BRepBuilderAPI_Sewing sewing(distance);
  sewing.Add(shape);
  sewing.Perform();
  if (sewing.SewedShape().IsNull()) {
    return shape;
  }
  for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
    const TopoDS_Shape other = sewing.ModifiedSubShape(faces.Current());
    if (other.ShapeType() == TopAbs_FACE && !other.IsSame(faces.Current())) {
      onReplaced(TopoDS::Face(faces.Current()), TopoDS::Face(other));
    }
  }
  return sewing.SewedShape();
}

ShapeMesh meshShape(const TopoDS_Shape& shape, const Division& division,
                    const std::function<std::optional<glb::Color>(const TopoDS_Face&)>& colorOf,
                    const std::optional<glb::Color>& color) {
  const BRepMesh_IncrementalMesh divided(shape, division.distance, false, division.angle);
  BRepLib::EncodeRegularity(shape, kSmooth);
  ShapeMesh result;
  CollectorsByColor triangles;
  for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
    const TopoDS_Face& face = TopoDS::Face(faces.Current());
    const std::optional<glb::Color> own = colorOf(face);
    const auto faceColor = own ? own : color;
    auto [collector, isNew] = triangles.try_emplace(faceColor, glb::Primitive::Kind::kTriangles,
                                                    faceColor, division.unit);
    result.lostFaces += addFace(face, collector->second) ? 0 : 1;
  }
  Collector lines(glb::Primitive::Kind::kLines, color, division.unit);
  addEdges(shape, lines);
  for (auto& [own, collector] : triangles) {
    result.mesh.push_back(collector.Take());
  }
  result.mesh.push_back(lines.Take());
  std::erase_if(result.mesh, [](const glb::Primitive& part) { return part.indices.empty(); });
  return result;
}

}  // namespace dxf2d::step
