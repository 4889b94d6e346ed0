// A scope in which numbers are formatted with a decimal point.
#pragma once

namespace dxf2d {

// Scoped guard: while at least one exists, the process's LC_NUMERIC locale is "C"; the last one
// restores the locale that the first one found. Process-wide, so not safe against other threads
// that format numbers. The export deliberately creates none: a drawing's decimal separator is the
// host's.
class DotLocale {
 public:
  DotLocale();
  virtual ~DotLocale();
  DotLocale(const DotLocale&) = delete;
  DotLocale& operator=(const DotLocale&) = delete;
};

}  // namespace dxf2d
