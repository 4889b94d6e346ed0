// The tree of records: nodes opened, instances made, and the end of an export.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "geometry/callbacks.h"
#include "ktscene/kt_graphic_attribute.h"
#include "ktscene/kt_run_code.h"
#include "ktscene/kt_scene.h"
#include "plugin/entry.h"
#include "session/callbacks.h"

namespace dxf2d {

namespace {

// Nothing is kept, so that the disk does not count.
constexpr const char16_t* kNowhere = u"/dev/null";

KtSceneNode namedNode(const std::u16string& id) {
  KtSceneNode node;
  node.graphicName = u"chair";
  node.objectId = id;
  node.realObjectId = id;
  return node;
}

// Side by side below the root.
void openAndCloseNodes(benchmark::State& state) {
  KtSceneNode node = namedNode(u"0000000000000000000001");
  KtGraphicAttribute attribute(node);
  for (auto _ : state) {
    DXF2dOpenFileForModel(kNowhere);
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      DXF2dOpenNode(&attribute);
      DXF2dCloseNode();
    }
    DXF2dCloseFileForModel();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(openAndCloseNodes)->Arg(1'000)->Arg(100'000);

// One inside the other.
void nestNodes(benchmark::State& state) {
  KtSceneNode node = namedNode(u"0000000000000000000001");
  KtGraphicAttribute attribute(node);
  for (auto _ : state) {
    DXF2dOpenFileForModel(kNowhere);
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      DXF2dOpenNode(&attribute);
    }
    DXF2dCloseFileForModel();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(nestNodes)->Arg(1'000)->Arg(100'000);

void reuseNodes(benchmark::State& state) {
  KtSceneNode node = namedNode(u"0000000000000000000001");
  KtGraphicAttribute attribute(node);
  for (auto _ : state) {
    DXF2dOpenFileForModel(kNowhere);
    DXF2dOpenNode(&attribute);
    faceSetCallback({0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0, 0.0}, {0, 1, 2, KtRunCode::kPolygon},
                    false, true);
    DXF2dCloseNode();
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      benchmark::DoNotOptimize(DXF2DReuseCallback(&attribute));
      DXF2dCloseNode();
    }
    DXF2dCloseFileForModel();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(reuseNodes)->Arg(1'000)->Arg(100'000);

}  // namespace

}  // namespace dxf2d
