#include "geometry/indexed_outline.h"

#include <cstddef>
#include <span>
#include <stdexcept>

#include "dxf/dxf_writer.h"
#include "geometry/outline/edge.h"
#include "geometry/outline/runs.h"
#include "ktscene/kt_run_code.h"
#include "session/record/block_node.h"

namespace dxf2d {

namespace {

// Writes the runs of one outline.
class RunWriter {
 public:
  RunWriter(DxfWriter& writer, const BlockNode& node, const std::vector<KtPoint3>& points)
      : writer_(writer), node_(node), points_(points) {}

  void WriteClosedPolyline(std::span<const int> run) {
    writer_.WritePolylineBegin(&node_.colorIndex, true);
    for (const int index : run) {
      writer_.WriteVertexBegin(&node_);
      const KtPoint3& point = PointAt(index);
      writer_.WritePoint10(&node_, point.Get0(), point.Get1(), point.Get2());
    }
    writer_.WriteSeqEnd();
  }

  void WriteLines(std::span<const int> run) {
    for (std::size_t k = 0; k + 1 < run.size(); ++k) {
      writer_.WriteLineBegin();
      writer_.WriteLineLayer();
      writer_.WriteColor(node_.colorIndex);
      const KtPoint3& start = PointAt(run[k]);
      writer_.WritePoint10(&node_, start.Get0(), start.Get1(), start.Get2());
      const KtPoint3& end = PointAt(run[k + 1]);
      writer_.WritePoint11(&node_, end.Get0(), end.Get1(), end.Get2());
    }
  }

 private:
  const KtPoint3& PointAt(int index) const {
    if (!namesPoint(index, points_.size())) {
      throw std::out_of_range("invalid vector<T> subscript");
    }
    return points_[static_cast<std::size_t>(index)];
  }

  DxfWriter& writer_;
  const BlockNode& node_;
  const std::vector<KtPoint3>& points_;
};

}  // namespace

void writeIndexedOutline(DxfWriter& writer, const BlockNode& node, const IndexedOutline& outline) {
  RunWriter runs(writer, node, outline.points);
  const std::span<const int> indices(outline.indices);
  // A run has at least one entry, whatever it is.
  constexpr RunScan kOneEntryAtLeast{.skippedInFirst = 1, .skippedInLater = 1};
  forEachRun(indices, kOneEntryAtLeast, [&](std::size_t begin, std::size_t end) {
    const std::span<const int> run = indices.subspan(begin, end - begin);
    if (indices[end] == KtRunCode::kLineStrip) {
      runs.WriteClosedPolyline(run);
    } else if (indices[end] == KtRunCode::kSegment) {
      runs.WriteLines(run);
    }
    return true;
  });
}

}  // namespace dxf2d
