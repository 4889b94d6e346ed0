// An export with one open node for a shape writer to write into.
#pragma once

#include "session/export_session.h"
#include "tests/support/drawing_session.h"

namespace dxf2d {

class ShapeSession : public DrawingSession {
 public:
  explicit ShapeSession(const KtMatrix& matrix = {}) {
    host_.node.matrix = matrix;
    DXF2dOpenNode(host_.Attribute());
  }

  BlockNode* Node() const { return exportSession().currentNode; }
  // Nothing in the file, nothing marked.
  bool IsUntouched() const { return Body().empty() && !exportSession().root->hasGeometry; }
  bool IsMarked() const { return Node()->hasGeometry && exportSession().root->hasGeometry; }

 private:
  HostNode host_;
};

inline KtMatrix turned(double x, double y, double z, double angle) {
  KtMatrix matrix;
  matrix.Rotate(x, y, z, angle);
  return matrix;
}

}  // namespace dxf2d
