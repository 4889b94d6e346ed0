#include "app/release/entity_writer.h"

#include <variant>

#include "app/drawing/line_type.h"
#include "app/release/head_sections.h"

namespace dxf2d::release {

struct EntityWriter::Dispatch {
  EntityWriter& writer;
  Handle owner;

  void operator()(const LineEntity& line) const { writer.WriteLine(line, owner); }
  void operator()(const PolylineEntity& polyline) const { writer.WritePolyline(polyline, owner); }
  void operator()(const FaceEntity& face) const { writer.WriteFace(face, owner); }
  void operator()(const CircleEntity& circle) const { writer.WriteCircle(circle, owner); }
  void operator()(const TextEntity& text) const { writer.WriteText(text, owner); }
  void operator()(const InsertEntity& insert) const { writer.WriteInsert(insert, owner); }
};

void EntityWriter::Write(const std::vector<DrawingEntity>& entities, Handle owner) {
  const Dispatch dispatch{*this, owner};
  for (const DrawingEntity& entity : entities) {
    std::visit(dispatch, entity);
  }
}

void EntityWriter::Open(std::string_view kind, std::string_view subclass,
                        const EntityProperties& properties, Handle owner) {
  tags_.Open(kind, next_++, owner);
  tags_.Subclass("AcDbEntity");
  tags_.Text(8, drawing_.layers[properties.layer].name);
  if (properties.lineType != LineType::kByLayer) {
    tags_.Text(6, lineTypeName(properties.lineType));
  }
  if (properties.color != kColorByLayer) {
    tags_.Integer(62, properties.color);
  }
  if (properties.lineWeight != kDefaultLineWeight) {
    tags_.Integer(370, properties.lineWeight);
  }
  if (properties.trueColor != kNoTrueColor && drawing_.release == Release::kR2004) {
    tags_.Integer(420, properties.trueColor);
  }
  tags_.Subclass(subclass);
}

void EntityWriter::WriteLine(const LineEntity& line, Handle owner) {
  Open("LINE", "AcDbLine", line, owner);
  tags_.Point(10, line.start);
  tags_.Point(11, line.end);
}

void EntityWriter::WritePolyline(const PolylineEntity& polyline, Handle owner) {
  Open("LWPOLYLINE", "AcDbPolyline", polyline, owner);
  tags_.Integer(90, static_cast<std::int64_t>(polyline.vertices.size()));
  tags_.Integer(70, polyline.closed ? 1 : 0);
  for (const PlanPoint vertex : polyline.vertices) {
    tags_.FlatPoint(10, vertex);
  }
}

void EntityWriter::WriteFace(const FaceEntity& face, Handle owner) {
  Open("3DFACE", "AcDbFace", face, owner);
  for (std::size_t i = 0; i < face.corners.size(); ++i) {
    tags_.Point(10 + static_cast<int>(i), face.corners[i]);
  }
}

void EntityWriter::WriteCircle(const CircleEntity& circle, Handle owner) {
  Open("CIRCLE", "AcDbCircle", circle, owner);
  tags_.Point(10, circle.center);
  tags_.Real(40, circle.radius);
}

void EntityWriter::WriteText(const TextEntity& text, Handle owner) {
  Open("TEXT", "AcDbText", text, owner);
  tags_.Point(10, text.at);
  tags_.Real(40, text.height);
  tags_.Text(1, text.bytes);
  if (text.rotation != 0.0) {
    tags_.Real(50, text.rotation);
  }
  if (text.widthFactor != 1.0) {
    tags_.Real(41, text.widthFactor);
  }
  tags_.Text(7, kTextStyleName);
  const bool isAligned = text.across != TextAcross::kLeft || text.up != TextUp::kBaseline;
  if (isAligned) {
    tags_.Integer(72, static_cast<int>(text.across));
    tags_.Point(11, text.at);
  }
  // The vertical alignment belongs to a second class of the same name.
  tags_.Subclass("AcDbText");
  if (isAligned) {
    tags_.Integer(73, static_cast<int>(text.up));
  }
}

void EntityWriter::WriteInsert(const InsertEntity& insert, Handle owner) {
  Open("INSERT", "AcDbBlockReference", insert, owner);
  tags_.Text(2, drawing_.blocks[insert.block].name);
  tags_.Point(10, insert.at);
  if (insert.rotation != 0.0) {
    tags_.Real(50, insert.rotation);
  }
}

}  // namespace dxf2d::release
