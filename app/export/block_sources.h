// The side table of a drawing: what its blocks and INSERTs are of.
#pragma once

#include <cstdint>
#include <vector>

#include "app/finish/side_table.h"
#include "app/model/plan_source.h"
#include "ktscene/kt_scene.h"

namespace dxf2d {

// The table of the drawing that the plug-in makes of `scene`. Blocks are named after the numbers of
// nodes in the order of the walk, in which `taken` has what the plug-in took as an instance.
//
// With `sources`, one for each node at the top, as makePlanScene returns them. Without, of a scene
// file: objects are nodes with an object id, named after it; their groups are the objects that they
// are in; there are no materials, and colors are those of the nodes.
finish::SideTable sideTableOf(const KtScene& scene, const std::vector<NodeSource>& sources,
                              const std::vector<std::uint8_t>& taken);

}  // namespace dxf2d
