#include "app/finish/left_out.h"

#include "app/cli/failure.h"

namespace dxf2d::finish {

namespace {

void noteCount(const std::string& name, std::size_t count, const char* one, const char* many) {
  if (count != 0) {
    note(name + ": " + std::to_string(count) + " " + (count == 1 ? one : many) + " left out");
  }
}

}  // namespace

void noteLeftOut(const std::string& name, const Drawing& drawing, const Summary& summary) {
  noteCount(name, drawing.skippedCount, "entity of an unsupported kind was",
            "entities of unsupported kinds were");
  noteCount(name, summary.pruned.emptyInserts, "insertion of a block that is not defined was",
            "insertions of blocks that are not defined were");
  noteCount(name, summary.pruned.shortPolylines, "polyline of fewer than two points was",
            "polylines of fewer than two points were");
  noteCount(name, summary.outOfRange, "entity with coordinates out of range was",
            "entities with coordinates out of range were");
}

}  // namespace dxf2d::finish
