// The end of a callback that writes.
#pragma once

namespace dxf2d {

class DxfWriter;

// Passes everything written to the operating system at the end of the scope, so that when a
// callback ends, by return or by exception, what it wrote is in the file. At the normal end a flush
// that fails throws CFileException out of the destructor; while another exception is on its way,
// that one is the error to report, and a failing flush stays quiet. Not for members or for objects
// on the heap.
//
// Example:
//   const FlushGuard flush(writer);
//   writer.WriteBlockHeader(node);
//   writer.WriteBlockEnd();
class FlushGuard {
 public:
  explicit FlushGuard(DxfWriter& writer);
  ~FlushGuard() noexcept(false);
  FlushGuard(const FlushGuard&) = delete;
  FlushGuard& operator=(const FlushGuard&) = delete;

 private:
  DxfWriter& writer_;
  // How many exceptions were on their way when the scope began.
  int exceptionsBefore_;
};

}  // namespace dxf2d
