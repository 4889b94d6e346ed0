// Face geometry as a wire frame, for hosts that call it directly: every distinct edge in plan as a
// line, without silhouettes.
#include "dxf/dxf_writer.h"
#include "dxf/flush_guard.h"
#include "geometry/callbacks.h"
#include "geometry/face_wires.h"
#include "geometry/indexed_outline.h"
#include "session/export_session.h"

namespace {

using dxf2d::BlockNode;
using dxf2d::DxfWriter;
using dxf2d::IndexedOutline;

std::vector<KtPoint3> pointsOf(const std::vector<double>& coords) {
  std::vector<KtPoint3> points(coords.size() / 3);
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i].Set(coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]);
  }
  return points;
}

}  // namespace

bool DXF2dFaceGeometry(const std::vector<double>& coords, const std::vector<int>& coordIndex,
                       const std::vector<double>& normals, const std::vector<int>& /*normalIndex*/,
                       const std::vector<double>& /*texCoords*/,
                       const std::vector<int>& /*texIndex*/, bool /*reverseOrientation*/,
                       bool /*closedSurface*/, bool /*normalPerVertex*/, bool /*convex*/,
                       const Texture* /*texture*/) {
  const dxf2d::ExportSession& session = dxf2d::exportSession();
  if (!session.CanDraw() || coordIndex.empty() || coords.empty()) {
    return false;
  }
  BlockNode& node = *session.currentNode;
  // One normal for the whole set: it is planar, and the edges inside it are not drawn.
  const bool planar = normals.size() == 3;
  IndexedOutline wires;
  wires.points = pointsOf(coords);
  wires.indices = dxf2d::distinctSegments(dxf2d::edgeRuns(dxf2d::regroupRuns(coordIndex), planar),
                                          wires.points, node.matrix);
  if (wires.indices.empty()) {
    return false;
  }
  DxfWriter& writer = *session.writer;
  const dxf2d::FlushGuard flush(writer);
  writer.WriteBlockHeader(node);
  node.MarkGeometry();
  writeIndexedOutline(writer, node, wires);
  writer.WriteBlockEnd();
  return true;
}
