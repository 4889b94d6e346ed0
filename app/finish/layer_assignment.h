// Layers and line types of a finished drawing.
#pragma once

#include <cstdint>

#include "app/drawing/drawing.h"
#include "app/finish/side_table.h"

namespace dxf2d::finish {

// What layers are made of. kNone leaves the drawing's own.
enum class LayerScheme : std::uint8_t { kNone, kObject, kGroup, kMaterial, kKind };

// Gives what stands in a block that `sources` knows the layer of `scheme`, its true color, and the
// line type and weight of its kind: hidden lines are dashed. With layers by object or group, each
// INSERT of the ENTITIES section is on the layer of what it places, and what several of them share
// on layer "0", which stands for that. Layers are made in the order in which the drawing first uses
// them.
void assignLayers(Drawing& drawing, const SideTable& sources, LayerScheme scheme);

}  // namespace dxf2d::finish
