#include "app/release/release_writer.h"

#include <cassert>
#include <string_view>

#include "app/release/drawing_extents.h"
#include "app/release/drawing_handles.h"
#include "app/release/entity_writer.h"
#include "app/release/head_sections.h"
#include "app/release/object_section.h"
#include "app/release/table_section.h"

namespace dxf2d::release {

namespace {

void openBlock(TagWriter& tags, Handle handle, Handle record, std::string_view name,
               PlanPoint base) {
  tags.Open("BLOCK", handle, record);
  tags.Subclass("AcDbEntity");
  tags.Text(8, "0");
  tags.Subclass("AcDbBlockBegin");
  tags.Text(2, name);
  tags.Integer(70, 0);
  tags.Point(10, base);
  tags.Text(3, name);
  tags.Text(1, "");
}

void closeBlock(TagWriter& tags, Handle handle, Handle record) {
  tags.Open("ENDBLK", handle, record);
  tags.Subclass("AcDbEntity");
  tags.Text(8, "0");
  tags.Subclass("AcDbBlockEnd");
}

void writeBlocks(TagWriter& tags, EntityWriter& entities, const Drawing& drawing,
                 const DrawingHandles& handles) {
  tags.Text(0, "SECTION");
  tags.Text(2, "BLOCKS");
  // What the spaces show stands in the ENTITIES section.
  openBlock(tags, kModelSpaceBegin, kModelSpaceRecord, "*Model_Space", {});
  closeBlock(tags, kModelSpaceEnd, kModelSpaceRecord);
  openBlock(tags, kPaperSpaceBegin, kPaperSpaceRecord, "*Paper_Space", {});
  closeBlock(tags, kPaperSpaceEnd, kPaperSpaceRecord);
  for (std::size_t i = 0; i < drawing.blocks.size(); ++i) {
    const DrawingBlock& block = drawing.blocks[i];
    openBlock(tags, handles.BlockBegin(i), handles.BlockRecord(i), block.name, block.base);
    entities.Write(block.entities, handles.BlockRecord(i));
    closeBlock(tags, handles.BlockEnd(i), handles.BlockRecord(i));
  }
  tags.Text(0, "ENDSEC");
}

}  // namespace

void writeDrawing(const Drawing& drawing, const ByteSink& sink) {
  assert(drawing.release == Release::kR2000 || drawing.release == Release::kR2004);
  const DrawingHandles handles(drawing);
  const PlanExtents extents = drawingExtents(drawing);
  TagWriter tags(sink);
  EntityWriter entities(tags, drawing, handles.FirstEntity());
  writeHeader(tags, drawing, extents, handles.Seed());
  writeClasses(tags, drawing.release);
  writeTables(tags, drawing, handles, extents);
  writeBlocks(tags, entities, drawing, handles);
  tags.Text(0, "SECTION");
  tags.Text(2, "ENTITIES");
  entities.Write(drawing.entities, kModelSpaceRecord);
  assert(entities.Next() == handles.Seed());
  tags.Text(0, "ENDSEC");
  writeObjects(tags, extents);
  tags.Text(0, "EOF");
  tags.Flush();
}

}  // namespace dxf2d::release
