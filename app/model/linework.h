// The lines that show of objects that are looked at together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "app/model/linework_options.h"
#include "platform/parallel.h"
#include "projection/scene.h"
#include "projection/segment_chains.h"

namespace dxf2d {

enum class LineKind : std::uint8_t {
  kBorder,
  kSilhouette,
  kCrease,
  kLine,     // given as a line
  kCut,      // where the plane of a section cuts faces
  kHidden,   // behind faces, whatever it would be else
  kOutline,  // of everything that an object, or the view, covers
};
inline constexpr std::uint64_t kLineKinds = 7;

// The group of the lines of a part and a kind: a number that ascends with both.
constexpr std::uint64_t lineGroup(std::uint64_t part, LineKind kind) {
  return part * kLineKinds + static_cast<std::uint64_t>(kind);
}
constexpr std::uint64_t partOfGroup(std::uint64_t group) { return group / kLineKinds; }
constexpr LineKind kindOfGroup(std::uint64_t group) {
  return static_cast<LineKind>(group % kLineKinds);
}

struct Linework {
  // In plan, in order of their groups. Outlines of the whole view are of part 0, those of an object
  // of its first part.
  projection::Polylines lines;
  std::size_t creases = 0;
  // Ends of cut lines at which no other cut line of the object ends.
  std::size_t openEnds = 0;
  // Cut objects that do not hide what is inside of them, where others do: their cut has gaps.
  std::size_t openObjects = 0;
  // Pieces of outlines that join no loop, and are left out.
  std::size_t droppedPieces = 0;
};

// By part of a scene: the object that it belongs to, and a number of its look, by which it is told
// from other parts of the object (mesh::Looks). The parts of an object follow each other.
struct LineworkParts {
  std::span<const projection::Index> objects;
  std::span<const projection::Index> looks;
};

// Draws `scene`. Edges at which faces meet at more than `creaseDegrees` are creases, and so are the
// lines along which faces pierce each other, where hidden lines are told from visible ones. Threads
// share the work; the lines are the same with any number.
Linework drawLinework(projection::Scene scene, const LineworkParts& parts,
                      const LineworkOptions& options, double creaseDegrees,
                      const Threading& threading);

}  // namespace dxf2d
