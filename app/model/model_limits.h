// How much of a model is taken on.
#pragma once

#include <cstddef>
#include <string>

namespace dxf2d {

// Small files can describe huge models, by nodes that share children and objects that share
// meshes. The numbers are several times what large honest models have.
struct ModelLimits {
  std::size_t nodes = 5'000'000;
  // Of all outlines that are to be found: those of shared geometry once for all objects that are
  // placed as instances of it, else once for each.
  std::size_t vertices = 200'000'000;
};

// Counts what a model unfolds to. Throws ModelError with kExitLimit when there is too much; `path`
// stands for the model in its sentence.
class LimitChecker {
 public:
  LimitChecker(const ModelLimits& limits, const std::string& path) : left_(limits), path_(path) {}

  void AddNode();
  void AddVertices(std::size_t count);

 private:
  ModelLimits left_;
  const std::string& path_;
};

}  // namespace dxf2d
