#include "app/drawing/dxf_reader.h"

#include <string>
#include <utility>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/drawing/drawing_nesting.h"
#include "app/drawing/entity_groups.h"
#include "app/drawing/entity_reader.h"
#include "app/drawing/file_text.h"
#include "app/drawing/table_reader.h"

namespace dxf2d {

namespace {

// The sections of one drawing, in the order in which they come.
class DrawingParser {
 public:
  DrawingParser(std::string_view text, std::string_view name)
      : reader_(text, name), entities_(reader_, drawing_) {}

  Drawing Parse() {
    reader_.Advance();
    while (!reader_.Current().Opens("EOF")) {
      ParseSection();
    }
    return std::move(drawing_);
  }

 private:
  void ParseSection() {
    if (!reader_.Current().Opens("SECTION")) {
      reader_.Fail(
          tr("%1 found where a section or EOF is expected", {quoted(reader_.Current().value)}),
          tr("check that it is a DXF drawing"));
    }
    reader_.Advance();
    if (reader_.Current().code != 2) {
      reader_.Fail(tr("the section has no name"), tr("add group 2"));
    }
    const std::string_view name = reader_.Current().value;
    reader_.Advance();
    if (name == "HEADER") {
      readHeader(reader_, drawing_);
    } else if (name == "TABLES") {
      readTables(reader_, entities_, drawing_);
    } else if (name == "BLOCKS") {
      ParseBlocks();
    } else if (name == "ENTITIES") {
      SkipToEntity();
      entities_.ReadUntil("ENDSEC", drawing_.entities);
    } else {
      SkipSection();
    }
    reader_.Advance();
  }

  void ParseBlocks() {
    SkipToEntity();
    while (!reader_.Current().Opens("ENDSEC")) {
      ParseBlock();
    }
  }

  void ParseBlock() {
    if (!reader_.Current().Opens("BLOCK")) {
      reader_.Fail(tr("%1 found where BLOCK is expected", {quoted(reader_.Current().value)}),
                   tr("export the drawing again"));
    }
    const EntityGroups groups(reader_);
    if (groups.Name().empty()) {
      groups.Fail(tr("it has no name"), tr("add group 2"));
    }
    const PlanPoint base = groups.Has(10) ? groups.Point(10) : PlanPoint{};
    const std::size_t number = entities_.BlockNumber(groups.Name());
    DefineBlock(number, base, groups);
    // Gathered aside: the entities may mention new blocks, and the list of blocks then moves.
    std::vector<DrawingEntity> added = std::move(drawing_.blocks[number].entities);
    entities_.ReadUntil("ENDBLK", added);
    added.shrink_to_fit();
    drawing_.blocks[number].entities = std::move(added);
    const EntityGroups end(reader_);
  }

  void DefineBlock(std::size_t number, PlanPoint base, const EntityGroups& groups) {
    DrawingBlock& block = drawing_.blocks[number];
    if (block.defined && (block.base.x != base.x || block.base.y != base.y)) {
      groups.Fail(tr("block %1 is defined twice with different base points", {quoted(block.name)}),
                  tr("give both the same"));
    }
    block.defined = true;
    block.base = base;
  }

  void SkipSection() {
    while (!reader_.Current().Opens("ENDSEC")) {
      refuseNewSection(reader_);
      reader_.Advance();
    }
  }

  void SkipToEntity() {
    while (reader_.Current().code != 0) {
      reader_.Advance();
    }
  }

  Drawing drawing_;
  GroupReader reader_;
  EntityReader entities_;
};

}  // namespace

Drawing readDrawing(const std::string& path) {
  const FileText text = readWhole(path);
  return parseDrawing(text.View(), path);
}

Drawing parseDrawing(std::string_view text, std::string_view name) {
  Drawing drawing = DrawingParser(text, name).Parse();
  checkNesting(drawing, std::string(name));
  return drawing;
}

void noteSkipped(const std::string& name, const Drawing& drawing) {
  if (drawing.skippedCount == 0) {
    return;
  }
  std::string kinds;
  for (const std::string& kind : drawing.skippedKinds) {
    kinds += (kinds.empty() ? "" : ", ") + kind;
  }
  note(trn("%1: %2 entity of an unsupported kind was left out, %3",
           "%1: %2 entities of unsupported kinds were left out, such as %3", drawing.skippedCount,
           {name, std::to_string(drawing.skippedCount), kinds}));
}

}  // namespace dxf2d
