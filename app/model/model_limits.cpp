#include "app/model/model_limits.h"

#include "app/model/model_error.h"

namespace dxf2d {
namespace {

[[noreturn]] void fail(const std::string& path, const char* things, const char* option) {
  throw ModelError(kExitLimit,
                   {path, std::string("expands to more ") + things + " than " + option + " allows",
                    std::string("raise ") + option + " or draw a part of the model"});
}

}  // namespace

void LimitChecker::AddNode() {
  if (left_.nodes == 0) {
    fail(path_, "nodes", "--max-nodes");
  }
  --left_.nodes;
}

void LimitChecker::AddVertices(std::size_t count) {
  if (count > left_.vertices) {
    fail(path_, "vertices", "--max-vertices");
  }
  left_.vertices -= count;
}

}  // namespace dxf2d
