#include "projection/scene.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>

#include "platform/large_memory.h"
#include "projection/triangulation.h"

namespace dxf2d::projection {
namespace {

// Beyond this, products of three coordinates overflow.
constexpr double kLargest = 1e100;

// Squares of anything smaller lose digits.
constexpr double kSmallest = 1e-100;

constexpr double kPlanShare = 1e-9;
constexpr double kTouchShare = 3e-7;
constexpr double kWeldShare = 1e-6;

// In place of the number of a point that is left out.
constexpr Index kNone = std::numeric_limits<Index>::max();

Point place(const Point& point, const Placement& placement) {
  return {placement.cosine * point[0] - placement.sine * point[1] + placement.x,
          placement.sine * point[0] + placement.cosine * point[1] + placement.y,
          point[2] + placement.z};
}

Bounds emptyBounds() {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  return {{kInfinity, kInfinity, kInfinity}, {-kInfinity, -kInfinity, -kInfinity}};
}

void add(Bounds& bounds, const Point& point) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    bounds.low[axis] = std::min(bounds.low[axis], point[axis]);
    bounds.high[axis] = std::max(bounds.high[axis], point[axis]);
  }
}

bool isUsable(const Point& point) {
  return std::ranges::all_of(point, [](double value) { return std::abs(value) <= kLargest; });
}

// Appends the points of `placed` that can be used. The result has each point's number in the scene.
std::vector<Index> appendPoints(const PlacedMesh& placed, Scene& scene) {
  std::vector<Index> numbers;
  reserveLarge(numbers, placed.mesh->points.size());
  for (const Point& point : placed.mesh->points) {
    const Point there = place(point, placed.placement);
    numbers.push_back(isUsable(there) ? static_cast<Index>(scene.points.size()) : kNone);
    if (isUsable(there)) {
      scene.points.push_back(there);
    }
  }
  return numbers;
}

void appendPolygons(const PlacedMesh& placed, const std::vector<Index>& numbers, Scene& scene) {
  Triangulation triangulation;
  std::vector<Index> corners;
  for (std::size_t p = 0; p < placed.mesh->PolygonCount(); ++p) {
    const std::span<const Index> polygon = placed.mesh->Polygon(p);
    if (polygon.size() == 3) {
      const std::array<Index, 3> triangle = {numbers[polygon[0]], numbers[polygon[1]],
                                             numbers[polygon[2]]};
      if (std::ranges::find(triangle, kNone) == triangle.end()) {
        scene.triangles.push_back(triangle);
        scene.polygonEdges.push_back(kAllPolygonEdges);
        scene.parts.push_back(placed.firstPart + placed.mesh->parts[p]);
      }
      continue;
    }
    corners.clear();
    for (const Index corner : polygon) {
      corners.push_back(numbers[corner]);
    }
    if (corners.size() < 3 || std::ranges::find(corners, kNone) != corners.end()) {
      continue;
    }
    triangulation.Run(scene.points, corners);
    std::uint8_t samePolygon = 0;
    for (const Triangulation::Triangle& triangle : triangulation.Triangles()) {
      scene.triangles.push_back(triangle.corners);
      scene.polygonEdges.push_back(triangle.polygonEdges | samePolygon);
      scene.parts.push_back(placed.firstPart + placed.mesh->parts[p]);
      samePolygon = kSamePolygon;
    }
  }
}

// Whether the mesh is made of triangles alone and all of its points can be used.
bool isPlain(const PlacedMesh& placed, std::size_t threads) {
  const mesh::PolygonMesh& mesh = *placed.mesh;
  if (mesh.corners.size() != 3 * mesh.PolygonCount()) {
    return false;
  }
  std::atomic<bool> isPlain{true};
  Blocks(mesh.PolygonCount(), threads).Run([&](std::size_t /*number*/, const Block& polygons) {
    for (std::size_t p = polygons.begin; p < polygons.end; ++p) {
      if (mesh.starts[p] != 3 * p) {
        isPlain = false;
      }
    }
  });
  Blocks(mesh.points.size(), threads).Run([&](std::size_t /*number*/, const Block& points) {
    for (std::size_t i = points.begin; i < points.end; ++i) {
      if (!isUsable(place(mesh.points[i], placed.placement))) {
        isPlain = false;
      }
    }
  });
  return isPlain;
}

// Appends the points and polygons of a plain mesh: each list by itself, as filling new memory takes
// longer than everything else. Returns each point's number in the scene, if there are lines or
// noise that name it.
std::vector<Index> appendPlain(const PlacedMesh& placed, std::size_t threads, Scene& scene) {
  const mesh::PolygonMesh& mesh = *placed.mesh;
  const auto first = static_cast<Index>(scene.points.size());
  std::vector<Index> numbers;
  const std::array<std::function<void()>, 4> tasks = {
      [&] {
        for (const Point& point : mesh.points) {
          scene.points.push_back(place(point, placed.placement));
        }
      },
      [&] {
        for (std::size_t i = 0; i < mesh.corners.size(); i += 3) {
          scene.triangles.push_back(
              {first + mesh.corners[i], first + mesh.corners[i + 1], first + mesh.corners[i + 2]});
        }
      },
      [&] {
        for (const Index part : mesh.parts) {
          scene.parts.push_back(placed.firstPart + part);
        }
        scene.polygonEdges.resize(scene.polygonEdges.size() + mesh.PolygonCount(),
                                  kAllPolygonEdges);
      },
      [&] {
        if (!mesh.segments.empty() || !placed.noise.empty()) {
          reserveLarge(numbers, mesh.points.size());
          numbers.resize(mesh.points.size());
          std::iota(numbers.begin(), numbers.end(), first);
        }
      }};
  runInParallel(tasks.size(), threads, [&](std::size_t i) { tasks[i](); });
  return numbers;
}

// Notes the deviations of the parts of `placed`, whose points are the scene's from `first` on.
void noteDeviations(const PlacedMesh& placed, std::size_t first, Scene& scene) {
  if (placed.mesh->parts.empty() || placed.deviationShare == 0) {
    return;
  }
  Bounds bounds = emptyBounds();
  for (std::size_t i = first; i < scene.points.size(); ++i) {
    add(bounds, scene.points[i]);
  }
  const Index last = placed.firstPart + *std::ranges::max_element(placed.mesh->parts);
  scene.deviations.resize(std::max<std::size_t>(scene.deviations.size(), last + 1));
  std::fill(scene.deviations.begin() + placed.firstPart, scene.deviations.begin() + last + 1,
            first < scene.points.size() ? placed.deviationShare * bounds.Diagonal() : 0);
}

void appendLines(const PlacedMesh& placed, const std::vector<Index>& numbers, Scene& scene) {
  for (const mesh::Segment& line : placed.mesh->segments) {
    if (numbers[line.a] != kNone && numbers[line.b] != kNone) {
      scene.lines.push_back({numbers[line.a], numbers[line.b], placed.firstPart + line.part});
    }
  }
}

void appendNoise(const PlacedMesh& placed, const std::vector<Index>& numbers, Scene& scene) {
  for (const mesh::DrawnEdge& edge : placed.noise) {
    if (numbers[edge.a] != kNone && numbers[edge.b] != kNone) {
      scene.noise.emplace_back(std::minmax(numbers[edge.a], numbers[edge.b]));
    }
  }
}

}  // namespace

Scene assembleScene(std::span<const PlacedMesh> meshes, const Threading& threading) {
  Scene scene;
  std::size_t pointCount = 0;
  std::size_t triangleCount = 0;
  for (const PlacedMesh& placed : meshes) {
    pointCount += placed.mesh->points.size();
    triangleCount += placed.mesh->corners.size() -
                     std::min(placed.mesh->corners.size(), 2 * placed.mesh->PolygonCount());
  }
  reserveLarge(scene.points, pointCount);
  reserveLarge(scene.triangles, triangleCount);
  reserveLarge(scene.polygonEdges, triangleCount);
  reserveLarge(scene.parts, triangleCount);
  for (const PlacedMesh& placed : meshes) {
    const std::size_t firstPoint = scene.points.size();
    const std::size_t threads = threading.For(placed.mesh->corners.size());
    std::vector<Index> numbers;
    if (threads > 1 && isPlain(placed, threads)) {
      numbers = appendPlain(placed, threads, scene);
    } else {
      numbers = appendPoints(placed, scene);
      appendPolygons(placed, numbers, scene);
    }
    noteDeviations(placed, firstPoint, scene);
    appendLines(placed, numbers, scene);
    appendNoise(placed, numbers, scene);
  }
  std::ranges::sort(scene.noise);
  return scene;
}

double Bounds::Diagonal() const {
  return std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
}

Bounds boundsOf(const Scene& scene, const Threading& threading) {
  const Blocks blocks(scene.triangles.size(), threading.For(scene.triangles.size()));
  std::vector<Bounds> boxes(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& block) {
    Bounds own = emptyBounds();
    for (std::size_t t = block.begin; t < block.end; ++t) {
      for (const Index corner : scene.triangles[t]) {
        add(own, scene.points[corner]);
      }
    }
    boxes[number] = own;
  });
  Bounds bounds = emptyBounds();
  for (const Bounds& box : boxes) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      bounds.low[axis] = std::min(bounds.low[axis], box.low[axis]);
      bounds.high[axis] = std::max(bounds.high[axis], box.high[axis]);
    }
  }
  for (const Scene::Line& line : scene.lines) {
    add(bounds, scene.points[line.from]);
    add(bounds, scene.points[line.to]);
  }
  return bounds.low[0] <= bounds.high[0] ? bounds : Bounds();
}

Tolerances tolerancesFor(const Bounds& bounds) {
  const double diagonal = bounds.Diagonal();
  const auto share = [&](double part) { return std::max(part * diagonal, kSmallest); };
  return {share(kPlanShare), share(kTouchShare), share(kWeldShare), share(kPlanShare)};
}

Tolerances outlineTolerancesFor(const Bounds& bounds) {
  Tolerances tolerances = tolerancesFor(bounds);
  tolerances.edgeOn = tolerances.touch;
  return tolerances;
}

}  // namespace dxf2d::projection
