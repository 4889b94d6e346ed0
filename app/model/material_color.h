// The colour of a model's material.
#pragma once

#include <array>
#include <optional>

struct aiMaterial;

// The base colour, or the diffuse colour where there is none: red, green, blue from 0 to 1. Empty
// when the material has neither, or one that is not finite.
std::optional<std::array<double, 3>> materialColor(const aiMaterial& material);
