// Entities of releases 2000 and 2004.
#pragma once

#include "app/drawing/drawing.h"
#include "app/release/tag_writer.h"

namespace dxf2d::release {

// Writes entities with handles one after the other. Refers to the writer and the drawing.
class EntityWriter {
 public:
  EntityWriter(TagWriter& tags, const Drawing& drawing, Handle first)
      : tags_(tags), drawing_(drawing), next_(first) {}

  // Writes all of `entities`, which belong to the block record `owner`.
  void Write(const std::vector<DrawingEntity>& entities, Handle owner);

  // The handle of the next entity.
  Handle Next() const { return next_; }

 private:
  struct Dispatch;

  void Open(std::string_view kind, std::string_view subclass, const EntityProperties& properties,
            Handle owner);
  void WriteLine(const LineEntity& line, Handle owner);
  void WritePolyline(const PolylineEntity& polyline, Handle owner);
  void WriteFace(const FaceEntity& face, Handle owner);
  void WriteCircle(const CircleEntity& circle, Handle owner);
  void WriteText(const TextEntity& text, Handle owner);
  void WriteInsert(const InsertEntity& insert, Handle owner);

  TagWriter& tags_;
  const Drawing& drawing_;
  Handle next_;
};

}  // namespace dxf2d::release
