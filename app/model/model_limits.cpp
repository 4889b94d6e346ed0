#include "app/model/model_limits.h"

#include "app/model/model_error.h"

namespace {

[[noreturn]] void fail(const std::string& path, const char* things, const char* option) {
  throw ModelError(kExitLimit, "cannot draw '" + path + "': it unfolds to more " + things +
                                   " than " + option + " allows; raise that or draw a part of it");
}

}  // namespace

void ModelMeter::AddNode() {
  if (left_.nodes == 0) fail(path_, "nodes", "--max-nodes");
  --left_.nodes;
}

void ModelMeter::AddVertices(std::size_t count) {
  if (count > left_.vertices) fail(path_, "vertices", "--max-vertices");
  left_.vertices -= count;
}
