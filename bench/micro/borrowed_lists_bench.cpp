// A viewer's buffers of floats as a scene: copied into face sets, or borrowed. Time to make a scene
// of 1,000 meshes and walk it with empty slots, and the bytes that the scene takes beside the
// buffers.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstddef>
#include <memory>
#include <vector>

#include "ktscene/kt_run_code.h"
#include "ktscene/kt_traverser.h"

namespace {

constexpr std::size_t kMeshes = 1000;
constexpr std::size_t kPoints = 1000;
constexpr std::size_t kTriangles = 2000;

struct ViewerMesh {
  std::vector<float> positions = std::vector<float>(3 * kPoints, 0.5F);
  std::vector<unsigned> triangles = std::vector<unsigned>(3 * kTriangles, 1U);
};

KtScene copiedScene(const std::vector<ViewerMesh>& meshes) {
  KtScene scene;
  for (const ViewerMesh& mesh : meshes) {
    auto faces = std::make_shared<KtFaceSet>();
    faces->coords.assign(mesh.positions.begin(), mesh.positions.end());
    faces->indices.assign(mesh.triangles.begin(), mesh.triangles.end());
    faces->indices.push_back(KtRunCode::kTriangles);
    scene.nodes.emplace_back().geometry.emplace_back(std::move(faces));
  }
  return scene;
}

KtScene borrowedScene(const std::vector<ViewerMesh>& meshes) {
  KtScene scene;
  for (const ViewerMesh& mesh : meshes) {
    auto faces = std::make_shared<KtBorrowedFaces>();
    faces->lists.floats = mesh.positions.data();
    faces->lists.coordCount = mesh.positions.size();
    faces->lists.indices = reinterpret_cast<const int*>(mesh.triangles.data());
    faces->lists.indexCount = mesh.triangles.size();
    faces->lists.runCode = KtRunCode::kTriangles;
    scene.nodes.emplace_back().geometry.emplace_back(std::move(faces));
  }
  return scene;
}

bool lookAt(const std::vector<double>& coords, const std::vector<int>& indices, bool /*reverse*/,
            bool /*closed*/) {
  benchmark::DoNotOptimize(coords.data());
  benchmark::DoNotOptimize(indices.data());
  return true;
}

std::size_t bytesInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void makeAndWalk(benchmark::State& state, KtScene (*make)(const std::vector<ViewerMesh>&)) {
  const std::vector<ViewerMesh> meshes(kMeshes);
  KtTraverser traverser;
  traverser.Init(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                 lookAt, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                 nullptr, nullptr);
  std::size_t bytes = 0;
  for (auto _ : state) {
    const std::size_t before = bytesInUse();
    const KtScene scene = make(meshes);
    bytes = bytesInUse() - before;
    benchmark::DoNotOptimize(traverser.Walk(scene, u""));
  }
  state.counters["bytes_of_scene"] = static_cast<double>(bytes);
}

BENCHMARK_CAPTURE(makeAndWalk, copied, copiedScene)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(makeAndWalk, borrowed, borrowedScene)->Unit(benchmark::kMillisecond);

}  // namespace
