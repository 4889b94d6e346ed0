// The callbacks that begin and end an export.
#include "dxf/dxf_writer.h"
#include "session/block_emission.h"
#include "session/callbacks.h"
#include "session/export_session.h"

namespace {

using dxf2d::BlockNode;
using dxf2d::DxfWriter;
using dxf2d::ExportSession;

BlockNode* makeRoot(ExportSession& session) {
  BlockNode root;
  root.blockNumber = session.blockCounter;
  return session.tree.Keep(root);
}

void writeDrawingEnd(ExportSession& session) {
  DxfWriter& writer = *session.writer;
  writeBlocks(session, session.root);
  writer.Write("  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n");
  dxf2d::pruneInsertList(session.insertList);
  for (const BlockNode* node : session.insertList) {
    writePlacement(writer, *node);
  }
  writer.Write("  0\nENDSEC\n");
  writer.Write("  0\nEOF\n");
  writer.Close();
}

// Ends the session even if closing fails, so that the next export starts with a clean one and no
// file stays open after a failed write.
class SessionEnd {
 public:
  explicit SessionEnd(ExportSession& session) : session_(session) {}
  ~SessionEnd() {
    session_.ClearTree();
    DxfWriter::Release();
    session_.writer = nullptr;
  }
  SessionEnd(const SessionEnd&) = delete;
  SessionEnd& operator=(const SessionEnd&) = delete;

 private:
  ExportSession& session_;
};

}  // namespace

bool DXF2dOpenFileForModel(const std::u16string& path) {
  ExportSession& session = dxf2d::exportSession();
  session.ClearTree();
  session.blockCounter = 0;
  session.depth = 0;
  session.root = makeRoot(session);
  session.lastNode = session.root;
  session.currentNode = session.root;
  ++session.blockCounter;
  session.writer = DxfWriter::Instance();
  return session.writer != nullptr && session.writer->Open(path);
}

bool DXF2dCloseFileForModel() {
  ExportSession& session = dxf2d::exportSession();
  if (session.writer == nullptr) {
    return false;
  }
  // Nodes that the host left open change nothing: the whole tree is drawn.
  session.currentNode = session.root;
  const SessionEnd end(session);
  writeDrawingEnd(session);
  return true;
}
