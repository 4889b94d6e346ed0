#include "app/model/model_limits.h"

#include "app/cli/translation.h"
#include "app/model/model_error.h"

namespace dxf2d {
namespace {

[[noreturn]] void fail(const std::string& path, const std::string& problem, const char* option) {
  throw ModelError(kExitLimit,
                   {path, problem, tr("raise %1 or draw a part of the model", {option})});
}

}  // namespace

void LimitChecker::AddNode() {
  if (left_.nodes == 0) {
    fail(path_, tr("expands to more nodes than --max-nodes allows"), "--max-nodes");
  }
  --left_.nodes;
}

void LimitChecker::AddVertices(std::size_t count) {
  if (count > left_.vertices) {
    fail(path_, tr("expands to more vertices than --max-vertices allows"), "--max-vertices");
  }
  left_.vertices -= count;
}

}  // namespace dxf2d
