#include "dxf/flush_guard.h"

#include <exception>

#include "dxf/dxf_writer.h"

namespace dxf2d {

FlushGuard::FlushGuard(DxfWriter& writer)
    : writer_(writer), exceptionsBefore_(std::uncaught_exceptions()) {}

FlushGuard::~FlushGuard() noexcept(false) {
  if (std::uncaught_exceptions() > exceptionsBefore_) {
    writer_.FlushQuietly();
  } else {
    writer_.Flush();
  }
}

}  // namespace dxf2d
