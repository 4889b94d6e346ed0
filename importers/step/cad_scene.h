// Documents of OpenCASCADE as scenes of triangles and lines.
#pragma once

#include <optional>

#include "importers/step/cad_file.h"
#include "importers/step/glb.h"

namespace dxf2d::step {

struct DivisionOptions {
  // How far triangles may be from their faces, in the unit of the file; none: 1/2000 of the model's
  // size.
  std::optional<double> distance;
  // Between adjacent triangles, in degrees.
  double angle = 12.0;
};

// Assemblies become nodes, and parts nodes with a mesh; parts that are used several times share
// one. Throws ReadError when there is nothing to draw.
glb::Scene sceneOf(const CadFile& file, const DivisionOptions& options);

}  // namespace dxf2d::step
