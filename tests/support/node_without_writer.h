// A session whose writer could not be created.
#pragma once

#include "session/export_session.h"
#include "tests/support/drawing_session.h"

namespace dxf2d {

// Until the end of the scope there is a current node, but no writer.
class NodeWithoutWriter {
 public:
  NodeWithoutWriter() : writer_(exportSession().writer) { exportSession().writer = nullptr; }
  ~NodeWithoutWriter() { exportSession().writer = writer_; }
  NodeWithoutWriter(const NodeWithoutWriter&) = delete;
  NodeWithoutWriter& operator=(const NodeWithoutWriter&) = delete;

  // Neither a block nor a mark was made.
  bool IsUntouched() const {
    return session_.Body().empty() && !exportSession().currentNode->hasGeometry;
  }

 private:
  DrawingSession session_;
  DxfWriter* writer_;
};

}  // namespace dxf2d
