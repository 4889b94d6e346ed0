// Entities of a drawing, from groups to structures.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "app/drawing/drawing.h"
#include "app/drawing/entity_groups.h"
#include "app/drawing/group_reader.h"

namespace dxf2d {

// Reads entities into lists of one drawing. Refers to the reader and the drawing.
class EntityReader {
 public:
  EntityReader(GroupReader& reader, Drawing& drawing) : reader_(reader), drawing_(drawing) {}

  // Appends the entities from the current group 0 up to the one that says `end`, which is current
  // then. Throws DxfError for what is malformed, LimitError for too many entities.
  void ReadUntil(std::string_view end, std::vector<DrawingEntity>& entities);

  // Number of the block `name` in the drawing, which has one of that name from now on.
  std::size_t BlockNumber(std::string_view name);

  // Number of the layer `name` in the drawing, which has one of that name from now on.
  std::uint32_t LayerNumber(std::string_view name);

 private:
  void ReadEntity(std::vector<DrawingEntity>& entities);
  bool ReadKnown(std::string_view kind, std::vector<DrawingEntity>& entities);
  EntityProperties PropertiesOf(const EntityGroups& groups);
  DrawingEntity ReadLine();
  DrawingEntity ReadFace();
  DrawingEntity ReadCircle();
  DrawingEntity ReadText();
  DrawingEntity ReadPolyline();
  DrawingEntity ReadLightweightPolyline();
  DrawingEntity ReadInsert();
  void Skip();
  void Count();

  GroupReader& reader_;
  Drawing& drawing_;
  std::size_t count_ = 0;
};

}  // namespace dxf2d
