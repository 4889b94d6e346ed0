#include "geometry/outline_block.h"

#include <cmath>
#include <cstddef>

#include "dxf/dxf_writer.h"
#include "dxf/flushed.h"
#include "geometry/index_codes.h"
#include "geometry/outline.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_v.h"
#include "plugin/exports.h"
#include "session/export_session.h"
#include "session/plain_instance.h"

namespace {

KtMatrix matrixOf(const BlockNode& node) {
  KtMatrix matrix;
  matrix.Init(node.matrix);
  return matrix;
}

// From the set's coordinates to those of the block that holds it: relative to the object that the
// node belongs to, so that the object's placement can put it back. An object that is tilted out of
// the plane cannot be placed in plan; what is below it is drawn where it stands.
KtMatrix blockTransform(const BlockNode& node) {
  const KtMatrix world = matrixOf(node);
  KtMatrix frame;
  KtMatrix relative;
  if (node.frame != nullptr) {
    if (!isPlainInstance(node.frame, nullptr)) {
      return world;
    }
    frame = matrixOf(*node.frame);
  }
  KtV_intern::CalculateNewRelativeMatrix(world, frame, relative);
  return relative;
}

void writeVertex(DxfWriter& writer, const BlockNode& node, const KtPoint3& point) {
  writer.WriteVertexBegin(&node);
  writer.WritePoint10(nullptr, point.Get0(), point.Get1(), point.Get2());
}

// Writes each run as a polyline. A run has at least one index, whatever its first entry is; one
// that the list's end cuts off is not written.
void writeRuns(DxfWriter& writer, const BlockNode& node, const std::vector<KtPoint3>& points,
               const std::vector<int>& indices) {
  const auto pointAt = [&](std::size_t k) -> const KtPoint3& {
    return points[static_cast<std::size_t>(indices[k])];
  };
  for (std::size_t begin = 0; begin < indices.size();) {
    std::size_t end = begin + 1;
    while (end < indices.size() && indices[end] >= 0) {
      ++end;
    }
    if (end >= indices.size()) {
      return;
    }
    writer.WritePolylineBegin(&node.colorIndex, false);
    for (std::size_t k = begin; k < end; ++k) {
      writeVertex(writer, node, pointAt(k));
    }
    if (indices[end] == kPolygonCode) {
      writeVertex(writer, node, pointAt(begin));
    }
    writer.WriteSeqEnd();
    begin = end + 1;
  }
}

// What faces and lines have in common; `buildOutline(placed, points, indices)` is where they
// differ.
template <class BuildOutlineOf>
bool drawOutline(const std::vector<double>& coords, const std::vector<int>& indices,
                 BuildOutlineOf buildOutline) {
  const ExportSession& session = exportSession();
  if (session.writer == nullptr || session.currentNode == nullptr || indices.empty() ||
      coords.empty()) {
    return false;
  }
  BlockNode& node = *session.currentNode;
  const KtMatrix transform = blockTransform(node);
  std::vector<KtPoint3> points;
  std::vector<int> outline = indices;
  if (!buildOutline(PlacedCoords{coords, transform}, points, outline)) {
    return true;
  }
  return flushed(*session.writer, [&](DxfWriter& writer) {
    node.MarkGeometry();
    writer.WriteBlockHeader(node);
    writeRuns(writer, node, points, outline);
    writer.WriteBlockEnd();
    return true;
  });
}

}  // namespace

bool faceSetCallback(const std::vector<double>& coords, const std::vector<int>& indices,
                     bool reverseOrientation, bool closedSurface) {
  return drawOutline(coords, indices, [&](const auto& placed, auto& points, auto& outline) {
    return BuildOutline(placed, points, outline, reverseOrientation, closedSurface);
  });
}

bool DXF2dLineGeometry(const std::vector<double>& coords, const std::vector<int>& indices) {
  return drawOutline(coords, indices, [](const auto& placed, auto& points, auto& outline) {
    return BuildLineOutline(placed, points, outline);
  });
}
