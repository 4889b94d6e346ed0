// A decimal point for as long as it lives.
#pragma once

// Scoped guard: while at least one lives, the process's LC_NUMERIC locale is "C"; the last one to
// go restores what the first one found. Process-wide, so not safe against other threads that format
// numbers. The export deliberately creates none: a drawing's decimal separator is the host's.
class DotLocale {
 public:
  DotLocale();
  virtual ~DotLocale();
  DotLocale(const DotLocale&) = delete;
  DotLocale& operator=(const DotLocale&) = delete;
};
