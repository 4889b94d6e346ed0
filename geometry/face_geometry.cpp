// Face geometry as a wire frame, for hosts that call it directly: every distinct edge in plan as a
// line, without silhouettes.
#include <utility>

#include "dxf/dxf_writer.h"
#include "dxf/flushed.h"
#include "geometry/face_wires.h"
#include "geometry/indexed_outline.h"
#include "plugin/exports.h"
#include "session/export_session.h"

namespace {

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
  const ExportSession& session = exportSession();
  if (session.writer == nullptr || session.currentNode == nullptr || coordIndex.empty() ||
      coords.empty()) {
    return false;
  }
  BlockNode& node = *session.currentNode;
  // One normal for the whole set: it is planar, and edges inside it are no edges.
  const bool planar = normals.size() == 3;
  IndexedOutline wires;
  wires.points = pointsOf(coords);
  wires.indices =
      distinctSegments(edgeRuns(regroupRuns(coordIndex), planar), wires.points, node.matrix);
  if (wires.indices.empty()) {
    return false;
  }
  return flushed(*session.writer, [&](DxfWriter& writer) {
    writer.WriteBlockHeader(node);
    node.MarkGeometry();
    writeIndexedOutline(writer, node, wires);
    writer.WriteBlockEnd();
    return true;
  });
}
