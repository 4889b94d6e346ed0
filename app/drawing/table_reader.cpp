#include "app/drawing/table_reader.h"

#include <cmath>
#include <cstdlib>

#include "app/cli/translation.h"
#include "app/drawing/entity_groups.h"
#include "app/drawing/line_type.h"

namespace dxf2d {

namespace {

Release releaseOf(const GroupReader& reader) {
  const std::string_view version = reader.Current().value;
  if (version == "AC1006") {
    return Release::kR10;
  }
  if (version == "AC1015") {
    return Release::kR2000;
  }
  if (version == "AC1018") {
    return Release::kR2004;
  }
  reader.Fail(tr("the drawing has version %1 and only AC1006, AC1015 and AC1018 are supported",
                 {quoted(version)}),
              tr("save it in one of them"));
}

void readLayer(GroupReader& reader, EntityReader& entities, Drawing& drawing) {
  constexpr int kLastColor = 255;
  const EntityGroups groups(reader);
  if (groups.Name().empty()) {
    groups.Fail(tr("it has no name"), tr("add group 2"));
  }
  Layer& layer = drawing.layers[entities.LayerNumber(groups.Name())];
  // A layer that is off has its color negated.
  const int color = std::abs(groups.Integer(62, layer.color));
  layer.color = color >= 1 && color <= kLastColor ? color : layer.color;
  layer.trueColor = groups.TrueColor();
  layer.lineWeight = groups.LineWeight();
  if (lineTypeOf(groups.LineTypeName()) == LineType::kDashed) {
    layer.lineType = LineType::kDashed;
  }
}

void readLineType(GroupReader& reader, Drawing& drawing) {
  const EntityGroups groups(reader);
  if (lineTypeOf(groups.Name()) != LineType::kDashed) {
    return;
  }
  // The last length is that of the gap, with a minus.
  const double gap = std::abs(groups.Real(49, 0.0));
  if (gap > 0.0 && std::isfinite(2.0 * gap)) {
    drawing.dashLength = 2.0 * gap;
  }
}

}  // namespace

void readHeader(GroupReader& reader, Drawing& drawing) {
  while (!reader.Current().Opens("ENDSEC")) {
    refuseNewSection(reader);
    const bool isVariable = reader.Current().code == 9;
    const std::string_view name = reader.Current().value;
    reader.Advance();
    if (isVariable && name == "$ACADVER") {
      drawing.release = releaseOf(reader);
    } else if (isVariable && name == "$INSUNITS" && reader.Current().code == 70) {
      drawing.units = reader.Integer();
    }
  }
}

void readTables(GroupReader& reader, EntityReader& entities, Drawing& drawing) {
  while (!reader.Current().Opens("ENDSEC")) {
    refuseNewSection(reader);
    if (reader.Current().Opens("LAYER")) {
      readLayer(reader, entities, drawing);
    } else if (reader.Current().Opens("LTYPE")) {
      readLineType(reader, drawing);
    } else {
      reader.Advance();
    }
  }
}

void refuseNewSection(const GroupReader& reader) {
  if (reader.Current().Opens("SECTION") || reader.Current().Opens("EOF")) {
    reader.Fail(tr("the section before has no ENDSEC"), tr("add it or export the drawing again"));
  }
}

}  // namespace dxf2d
