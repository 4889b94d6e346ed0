// The callbacks that draw face sets and line sets as their outlines in plan.
#include <cstddef>
#include <optional>

#include "dxf/dxf_writer.h"
#include "dxf/flush_guard.h"
#include "geometry/callbacks.h"
#include "geometry/outline/already_chained.h"
#include "geometry/outline/outline.h"
#include "geometry/outline/runs.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_v.h"
#include "session/export_session.h"
#include "session/plain_instance.h"

namespace dxf2d {

namespace {

// Where a set is drawn: the block of the current node, in the coordinates that `transform` leads
// to.
struct Target {
  DxfWriter& writer;
  BlockNode& node;
  KtMatrix transform;
};

struct Outline {
  std::vector<KtPoint3> points;
  std::vector<int> chains;
};

// From the set's coordinates to those of the block that holds it: relative to the object that the
// node belongs to, whose placement transforms them back. An object that is tilted out of the plane
// cannot be placed in plan, so what is below it is drawn in world coordinates.
KtMatrix blockTransform(const BlockNode& node) {
  KtMatrix frame;
  KtMatrix relative;
  if (node.frame != nullptr) {
    if (!isPlainInstance(node.frame, nullptr)) {
      return node.matrix;
    }
    frame = node.frame->matrix;
  }
  KtV_intern::CalculateNewRelativeMatrix(node.matrix, frame, relative);
  return relative;
}

// Null when there is nothing to draw into, or nothing to draw.
std::optional<Target> findTarget(const std::vector<double>& coords,
                                 const std::vector<int>& indices) {
  const ExportSession& session = exportSession();
  if (!session.CanDraw() || indices.empty() || coords.empty()) {
    return std::nullopt;
  }
  BlockNode& node = *session.currentNode;
  return Target{*session.writer, node, blockTransform(node)};
}

// Writes each chain as a polyline of the points pointAt(index). Every chain has at least one index
// and its terminator.
template <class PointAt>
void writeBlock(const Target& target, const std::vector<int>& chains, PointAt pointAt) {
  DxfWriter& writer = target.writer;
  const FlushGuard flush(writer);
  target.node.MarkGeometry();
  writer.WriteBlockHeader(target.node);
  forEachRun(chains, {}, [&](std::size_t begin, std::size_t end) {
    writer.WritePolylineBegin(&target.node.colorIndex, false);
    writer.WriteVertices(end - begin, [&](std::size_t k) {
      return pointAt(static_cast<std::size_t>(chains[begin + k]));
    });
    writer.WriteSeqEnd();
    return true;
  });
  writer.WriteBlockEnd();
}

void writeBlock(const Target& target, const Outline& outline) {
  writeBlock(target, outline.chains, [&](std::size_t i) { return outline.points[i]; });
}

}  // namespace

bool faceSetCallback(const std::vector<double>& coords, const std::vector<int>& indices,
                     bool reverseOrientation, bool closedSurface) {
  const std::optional<Target> target = findTarget(coords, indices);
  if (!target) {
    return false;
  }
  Outline outline;
  if (BuildOutline({coords, target->transform}, indices, outline.points, outline.chains,
                   reverseOrientation, closedSurface)) {
    writeBlock(*target, outline);
  }
  return true;
}

}  // namespace dxf2d

bool DXF2dLineGeometry(const std::vector<double>& coords, const std::vector<int>& indices) {
  const std::optional<dxf2d::Target> target = dxf2d::findTarget(coords, indices);
  if (!target) {
    return false;
  }
  const dxf2d::PlacedCoords placed{coords, target->transform};
  dxf2d::Outline outline;
  if (isAlreadyChained(placed, indices)) {
    dxf2d::writeBlock(*target, indices, [&](std::size_t i) { return placed.At(i); });
  } else if (BuildLineOutline(placed, indices, outline.points, outline.chains)) {
    dxf2d::writeBlock(*target, outline);
  }
  return true;
}
