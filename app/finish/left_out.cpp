#include "app/finish/left_out.h"

#include "app/cli/failure.h"
#include "app/cli/translation.h"

namespace dxf2d::finish {

namespace {

void noteCount(const std::string& name, std::size_t count, const char* one, const char* many) {
  if (count != 0) {
    note(trn(one, many, count, {name, std::to_string(count)}));
  }
}

}  // namespace

void noteLeftOut(const std::string& name, const Drawing& drawing, const Summary& summary) {
  noteCount(name, drawing.skippedCount, "%1: %2 entity of an unsupported kind was left out",
            "%1: %2 entities of unsupported kinds were left out");
  noteCount(name, summary.pruned.emptyInserts,
            "%1: %2 insertion of a block that is not defined was left out",
            "%1: %2 insertions of blocks that are not defined were left out");
  noteCount(name, summary.pruned.shortPolylines,
            "%1: %2 polyline of fewer than two points was left out",
            "%1: %2 polylines of fewer than two points were left out");
  noteCount(name, summary.outOfRange, "%1: %2 entity with coordinates out of range was left out",
            "%1: %2 entities with coordinates out of range were left out");
}

}  // namespace dxf2d::finish
