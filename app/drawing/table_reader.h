// The HEADER and TABLES sections of a drawing, as far as its entities depend on them.
#pragma once

#include "app/drawing/drawing.h"
#include "app/drawing/entity_reader.h"
#include "app/drawing/group_reader.h"

namespace dxf2d {

// Both read from a section's first group to its ENDSEC, which is current then. They throw DxfError
// for what is malformed or cut short.

// Takes the release and the units. Throws DxfError for a release that is not read.
void readHeader(GroupReader& reader, Drawing& drawing);

// Takes the layers and the dashes of the dashed line type.
void readTables(GroupReader& reader, EntityReader& entities, Drawing& drawing);

// Throws DxfError where the current group begins a section or ends the drawing, since the section
// that is being read has not ended.
void refuseNewSection(const GroupReader& reader);

}  // namespace dxf2d
