// Finds the visible lines of an STL, seen from above, with OpenCASCADE's HLRBRep_PolyAlgo, and
// prints the seconds that it takes; reading the model and making a shape of it do not count.
//
// usage: dxf2d_hidden_lines_occt MODEL.stl
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Builder.hxx>
#include <HLRAlgo_Projector.hxx>
#include <HLRBRep_PolyAlgo.hxx>
#include <HLRBRep_PolyHLRToShape.hxx>
#include <RWStl.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Shell.hxx>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <gp_Ax2.hxx>
#include <map>
#include <utility>

namespace {

// A shell of planar faces, which share the edges of the mesh.
TopoDS_Shape shellOf(const Poly_Triangulation& mesh) {
  std::map<std::pair<int, int>, TopoDS_Edge> edges;
  const auto edgeOf = [&](int a, int b) {
    const auto [entry, isNew] = edges.try_emplace(std::minmax(a, b));
    if (isNew) {
      entry->second = BRepBuilderAPI_MakeEdge(mesh.Node(std::min(a, b)), mesh.Node(std::max(a, b)));
    }
    return a < b ? entry->second : TopoDS::Edge(entry->second.Reversed());
  };
  TopoDS_Shell shell;
  const BRep_Builder builder;
  builder.MakeShell(shell);
  for (int t = 1; t <= mesh.NbTriangles(); ++t) {
    std::array<int, 3> c{};
    mesh.Triangle(t).Get(c[0], c[1], c[2]);
    BRepBuilderAPI_MakeWire wire(edgeOf(c[0], c[1]), edgeOf(c[1], c[2]), edgeOf(c[2], c[0]));
    if (!wire.IsDone()) {
      continue;
    }
    BRepBuilderAPI_MakeFace face(wire.Wire(), Standard_True);
    if (face.IsDone()) {
      builder.Add(shell, face.Face());
    }
  }
  // One triangle for each face.
  const BRepMesh_IncrementalMesh triangles(shell, 1e6);
  return shell;
}

int countEdges(const TopoDS_Shape& shape) {
  int count = 0;
  if (!shape.IsNull()) {
    for (TopExp_Explorer edge(shape, TopAbs_EDGE); edge.More(); edge.Next()) {
      ++count;
    }
  }
  return count;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: %s MODEL.stl\n", arguments[0]);
    return 2;
  }
  const Handle(Poly_Triangulation) mesh = RWStl::ReadFile(arguments[1]);
  if (mesh.IsNull()) {
    std::fprintf(stderr, "%s: cannot read %s\n", arguments[0], arguments[1]);
    return 1;
  }
  const TopoDS_Shape shape = shellOf(*mesh);
  const auto start = std::chrono::steady_clock::now();
  const Handle(HLRBRep_PolyAlgo) algorithm = new HLRBRep_PolyAlgo(shape);
  algorithm->Projector(HLRAlgo_Projector(gp_Ax2(gp::Origin(), gp::DZ(), gp::DX())));
  algorithm->Update();
  HLRBRep_PolyHLRToShape lines;
  lines.Update(algorithm);
  const int edges = countEdges(lines.VCompound()) + countEdges(lines.OutLineVCompound());
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::printf("edges %d\nseconds %.3f\n", edges, seconds.count());
  return edges > 0 ? 0 : 1;
}
