// The end of a callback that writes.
#pragma once

#include "dxf/dxf_writer.h"

// Runs `write(writer)` and returns its result, with everything written handed to the operating
// system before: when a callback ends, by return or by exception, what it wrote is in the file. A
// failure surfaces as CFileException.
template <class Write>
bool flushed(DxfWriter& writer, Write write) {
  try {
    const bool result = write(writer);
    writer.Flush();
    return result;
  } catch (...) {
    writer.FlushQuietly();
    throw;
  }
}
