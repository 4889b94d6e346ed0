#include "geometry/outline_block.h"

#include <algorithm>
#include <cstddef>

#include "dxf/dxf_writer.h"
#include "dxf/flushed.h"
#include "geometry/given_chains.h"
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

// Writes each run as a polyline of the points pointAt(index). Every run has at least one index and
// is closed by a code.
template <class PointAt>
void writeRuns(DxfWriter& writer, const BlockNode& node, const std::vector<int>& indices,
               PointAt pointAt) {
  for (auto run = indices.begin(); run != indices.end();) {
    const auto code = std::find_if(run, indices.end(), [](int index) { return index < 0; });
    writer.WritePolylineBegin(&node.colorIndex, false);
    writer.WriteVertices(static_cast<std::size_t>(code - run), [&](std::size_t k) {
      return pointAt(static_cast<std::size_t>(run[static_cast<std::ptrdiff_t>(k)]));
    });
    writer.WriteSeqEnd();
    run = code + 1;
  }
}

// Draws the runs as the block of the current node; `pointAt` as for writeRuns.
template <class PointAt>
bool writeBlock(DxfWriter& writer, BlockNode& node, const std::vector<int>& indices,
                PointAt pointAt) {
  return flushed(writer, [&](DxfWriter&) {
    node.MarkGeometry();
    writer.WriteBlockHeader(node);
    writeRuns(writer, node, indices, pointAt);
    writer.WriteBlockEnd();
    return true;
  });
}

// What faces and lines have in common: draw(writer, node, placed) draws a set that there is a file
// and a node for.
template <class Draw>
bool drawSet(const std::vector<double>& coords, const std::vector<int>& indices, Draw draw) {
  const ExportSession& session = exportSession();
  if (session.writer == nullptr || session.currentNode == nullptr || indices.empty() ||
      coords.empty()) {
    return false;
  }
  BlockNode& node = *session.currentNode;
  const KtMatrix transform = blockTransform(node);
  return draw(*session.writer, node, PlacedCoords{coords, transform});
}

// Draws what `buildOutline(points, outline)` makes.
template <class BuildOutlineOf>
bool drawOutline(DxfWriter& writer, BlockNode& node, BuildOutlineOf buildOutline) {
  std::vector<KtPoint3> points;
  std::vector<int> outline;
  if (!buildOutline(points, outline)) {
    return true;
  }
  return writeBlock(writer, node, outline, [&](std::size_t i) { return points[i]; });
}

}  // namespace

bool faceSetCallback(const std::vector<double>& coords, const std::vector<int>& indices,
                     bool reverseOrientation, bool closedSurface) {
  const auto draw = [&](DxfWriter& writer, BlockNode& node, const PlacedCoords& placed) {
    return drawOutline(writer, node, [&](auto& points, auto& outline) {
      return BuildOutline(placed, indices, points, outline, reverseOrientation, closedSurface);
    });
  };
  return drawSet(coords, indices, draw);
}

bool DXF2dLineGeometry(const std::vector<double>& coords, const std::vector<int>& indices) {
  const auto draw = [&](DxfWriter& writer, BlockNode& node, const PlacedCoords& placed) {
    if (areGivenChains(placed, indices)) {
      return writeBlock(writer, node, indices, [&](std::size_t i) { return placed.At(i); });
    }
    return drawOutline(writer, node, [&](auto& points, auto& outline) {
      return BuildLineOutline(placed, indices, points, outline);
    });
  };
  return drawSet(coords, indices, draw);
}
