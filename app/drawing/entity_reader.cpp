#include "app/drawing/entity_reader.h"

#include <algorithm>
#include <utility>

#include "app/cli/translation.h"
#include "app/drawing/line_type.h"

namespace dxf2d {

namespace {

// Entities and blocks held in memory, at some hundred bytes each.
constexpr std::size_t kMaxRecords = 10'000'000;

int readAlignment(const EntityGroups& groups, int code, int last) {
  const int value = groups.Integer(code, 0);
  if (value < 0 || value > last) {
    groups.Fail(tr("alignment %1 in group %2 is not supported",
                   {std::to_string(value), std::to_string(code)}),
                tr("use 0 to %1", {std::to_string(last)}));
  }
  return value;
}

PlanPoint readVertex(GroupReader& reader) {
  const EntityGroups groups(reader);
  // A bulge: the next edge is an arc.
  groups.RequireOnly(42, 0.0);
  return groups.Point(10);
}

}  // namespace

void EntityReader::ReadUntil(std::string_view end, std::vector<DrawingEntity>& entities) {
  while (!reader_.Current().Opens(end)) {
    ReadEntity(entities);
  }
}

std::size_t EntityReader::BlockNumber(std::string_view name) {
  const auto [place, isNew] =
      drawing_.blockNumbers.try_emplace(std::string(name), drawing_.blocks.size());
  if (isNew) {
    Count();
    drawing_.blocks.emplace_back().name = name;
  }
  return place->second;
}

std::uint32_t EntityReader::LayerNumber(std::string_view name) {
  const auto next = static_cast<std::uint32_t>(drawing_.layers.size());
  const auto [place, isNew] = drawing_.layerNumbers.try_emplace(std::string(name), next);
  if (isNew) {
    Count();
    drawing_.layers.emplace_back().name = name;
  }
  return place->second;
}

void EntityReader::ReadEntity(std::vector<DrawingEntity>& entities) {
  if (ReadKnown(reader_.Current().value, entities)) {
    Count();
  } else {
    Skip();
  }
}

bool EntityReader::ReadKnown(std::string_view kind, std::vector<DrawingEntity>& entities) {
  if (kind == "POLYLINE") {
    entities.push_back(ReadPolyline());
  } else if (kind == "LWPOLYLINE") {
    entities.push_back(ReadLightweightPolyline());
  } else if (kind == "LINE") {
    entities.push_back(ReadLine());
  } else if (kind == "INSERT") {
    entities.push_back(ReadInsert());
  } else if (kind == "TEXT") {
    entities.push_back(ReadText());
  } else if (kind == "3DFACE") {
    entities.push_back(ReadFace());
  } else if (kind == "CIRCLE") {
    entities.push_back(ReadCircle());
  } else {
    return false;
  }
  return true;
}

EntityProperties EntityReader::PropertiesOf(const EntityGroups& groups) {
  EntityProperties properties;
  properties.color = groups.Integer(62, kColorByLayer);
  properties.trueColor = groups.TrueColor();
  properties.lineWeight = groups.LineWeight();
  properties.lineType = lineTypeOf(groups.LineTypeName());
  if (!groups.LayerName().empty() && groups.LayerName() != drawing_.layers.front().name) {
    properties.layer = LayerNumber(groups.LayerName());
  }
  return properties;
}

DrawingEntity EntityReader::ReadLine() {
  const EntityGroups groups(reader_);
  return LineEntity{PropertiesOf(groups), groups.Point(10), groups.Point(11)};
}

DrawingEntity EntityReader::ReadFace() {
  const EntityGroups groups(reader_);
  // Hidden edges.
  groups.RequireOnly(70, 0.0);
  const PlanPoint third = groups.Point(12);
  const PlanPoint fourth = groups.Has(13) ? groups.Point(13) : third;
  return FaceEntity{PropertiesOf(groups), {groups.Point(10), groups.Point(11), third, fourth}};
}

DrawingEntity EntityReader::ReadCircle() {
  const EntityGroups groups(reader_);
  const double radius = groups.RequiredReal(40);
  if (radius < 0.0) {
    groups.Fail(tr("the radius is negative"), tr("give it a radius of 0 or more"));
  }
  return CircleEntity{PropertiesOf(groups), groups.Point(10), radius};
}

DrawingEntity EntityReader::ReadText() {
  const EntityGroups groups(reader_);
  TextEntity text;
  static_cast<EntityProperties&>(text) = PropertiesOf(groups);
  text.across = static_cast<TextAcross>(readAlignment(groups, 72, 2));
  text.up = static_cast<TextUp>(readAlignment(groups, 73, 3));
  const bool aligned = text.across != TextAcross::kLeft || text.up != TextUp::kBaseline;
  if (aligned && groups.Has(11)) {
    text.at = groups.Point(11);
  } else if (groups.Has(10)) {
    text.at = groups.Point(10);
  }
  text.height = groups.RequiredReal(40);
  text.widthFactor = groups.Real(41, 1.0);
  if (!(text.widthFactor > 0.0)) {
    groups.Fail(tr("the width factor is not positive"), tr("make it 1"));
  }
  text.rotation = groups.Real(50, 0.0);
  // Where a multi-byte page makes fewer bytes than the text has characters, zeros fill the rest.
  text.bytes = groups.Text();
  std::erase(text.bytes, '\0');
  return text;
}

DrawingEntity EntityReader::ReadPolyline() {
  const EntityGroups groups(reader_);
  PolylineEntity polyline;
  static_cast<EntityProperties&>(polyline) = PropertiesOf(groups);
  constexpr int kClosed = 1;
  // A polyline in space and a pattern that runs through its corners: flat, both look the same.
  constexpr int kHarmless = kClosed | 8 | 128;
  const int flags = groups.Integer(70, 0);
  if ((flags & ~kHarmless) != 0) {
    groups.Fail(
        tr("flags %1 mean a curve or a mesh, which is not supported", {std::to_string(flags)}),
        tr("use a drawing written by dxf2d"));
  }
  polyline.closed = (flags & kClosed) != 0;
  while (reader_.Current().Opens("VERTEX")) {
    polyline.vertices.push_back(readVertex(reader_));
  }
  if (!reader_.Current().Opens("SEQEND")) {
    groups.Fail(tr("its vertices end without SEQEND"), tr("add it or export the drawing again"));
  }
  const EntityGroups end(reader_);
  polyline.vertices.shrink_to_fit();
  return polyline;
}

DrawingEntity EntityReader::ReadLightweightPolyline() {
  PolylineEntity polyline;
  const EntityGroups groups(reader_, &polyline.vertices);
  static_cast<EntityProperties&>(polyline) = PropertiesOf(groups);
  constexpr int kClosed = 1;
  polyline.closed = (groups.Integer(70, 0) & kClosed) != 0;
  polyline.vertices.shrink_to_fit();
  return polyline;
}

DrawingEntity EntityReader::ReadInsert() {
  const EntityGroups groups(reader_);
  if (groups.Name().empty()) {
    groups.Fail(tr("it names no block"), tr("add group 2"));
  }
  for (const int scale : {41, 42}) {
    groups.RequireOnly(scale, 1.0);
  }
  for (const int copies : {70, 71}) {
    if (groups.Integer(copies, 1) != 0) {
      groups.RequireOnly(copies, 1.0);
    }
  }
  InsertEntity insert;
  static_cast<EntityProperties&>(insert) = PropertiesOf(groups);
  insert.block = BlockNumber(groups.Name());
  insert.at = groups.Point(10);
  insert.rotation = groups.Real(50, 0.0);
  if (groups.Integer(66, 0) == 0) {
    return insert;
  }
  while (reader_.Current().Opens("ATTRIB")) {
    Skip();
  }
  if (!reader_.Current().Opens("SEQEND")) {
    groups.Fail(tr("attributes are announced but no SEQEND follows"),
                tr("add it or export the drawing again"));
  }
  const EntityGroups end(reader_);
  return insert;
}

void EntityReader::Skip() {
  constexpr std::size_t kKindsKept = 3;
  const DxfGroup& opening = reader_.Current();
  static constexpr std::string_view kFrame[] = {"SECTION", "ENDSEC", "BLOCK", "ENDBLK", "EOF",
                                                "VERTEX",  "SEQEND", "TABLE", "ENDTAB"};
  if (std::ranges::find(kFrame, opening.value) != std::end(kFrame)) {
    reader_.Fail(tr("%1 found where an entity is expected", {std::string(opening.value)}),
                 tr("export the drawing again"));
  }
  const std::string kind = quoted(opening.value);
  std::vector<std::string>& kinds = drawing_.skippedKinds;
  if (kinds.size() < kKindsKept && std::ranges::find(kinds, kind) == kinds.end()) {
    kinds.push_back(kind);
  }
  ++drawing_.skippedCount;
  do {
    reader_.Advance();
  } while (reader_.Current().code != 0);
}

void EntityReader::Count() {
  if (++count_ > kMaxRecords) {
    throw LimitError(reader_.Name(), tr("contains more than %1 entities and blocks",
                                        {std::to_string(kMaxRecords)}));
  }
}

}  // namespace dxf2d
