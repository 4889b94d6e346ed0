// What an export that failed leaves to the next one.
#pragma once

#include <functional>

#include "platform/cfile_exception.h"
#include "tests/support/drawing_session.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

inline CFileException::Cause causeOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const CFileException& exception) {
    return exception.m_cause;
  }
  return CFileException::none;
}

inline void expectNextExportIsRight() {
  HostNode leaf(u"g", u"A", u"A");
  DrawingSession session;
  walkLeaf(leaf);
  EXPECT_EQ(session.Close(), blockText(1, unitLineText()) + blockText(0, insertText(1)) +
                                 drawingEndText(insertText(1)));
}

}  // namespace dxf2d
