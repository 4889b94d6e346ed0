#include "app/model/material_color.h"

#include <assimp/material.h>

#include <algorithm>
#include <cmath>

std::optional<std::array<double, 3>> materialColor(const aiMaterial& material) {
  aiColor4D color;
  if (material.Get(AI_MATKEY_BASE_COLOR, color) != AI_SUCCESS &&
      material.Get(AI_MATKEY_COLOR_DIFFUSE, color) != AI_SUCCESS) {
    return std::nullopt;
  }
  std::array<double, 3> result{color.r, color.g, color.b};
  for (double& component : result) {
    if (!std::isfinite(component)) return std::nullopt;
    component = std::clamp(component, 0.0, 1.0);
  }
  return result;
}
