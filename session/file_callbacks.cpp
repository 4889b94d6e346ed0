// The callbacks that begin and end an export.
#include "dxf/dxf_writer.h"
#include "ktscene/kt_matrix.h"
#include "plugin/exports.h"
#include "session/block_emission.h"
#include "session/export_session.h"

namespace {

BlockNode* makeRoot(ExportSession& session) {
  BlockNode root;
  KtMatrix identity;
  identity.Identity();
  identity.GetData(root.matrix);
  root.blockNumber = session.blockCounter;
  return session.tree.Keep(root);
}

void writeDrawingEnd(ExportSession& session) {
  DxfWriter& writer = *session.writer;
  writeBlocks(session, session.root);
  writer.Write("  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n");
  pruneInsertList(session.insertList);
  for (const BlockNode* node : session.insertList) {
    writePlacement(writer, *node);
  }
  writer.Write("  0\nENDSEC\n");
  writer.Write("  0\nEOF\n");
  writer.Close();
}

// Ends the session however closing went, so that the next export finds a clean one and no file
// stays open behind a failed write.
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
  ExportSession& session = exportSession();
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
  ExportSession& session = exportSession();
  if (session.writer == nullptr) {
    return false;
  }
  // Nodes that the host left open change nothing: the drawing is that of the whole tree.
  session.currentNode = session.root;
  const SessionEnd end(session);
  writeDrawingEnd(session);
  return true;
}
