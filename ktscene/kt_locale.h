// Numbers with a decimal point, whatever the host's locale.
#pragma once

#include "ktscene/export.h"

// For as long as it lives, the C library writes and reads numbers on this thread with a point
// (LC_NUMERIC is that of "C"); the rest of the locale, and other threads, stay as they are. Costs
// only a check when the point is in force already. On Windows, whose C library has one locale for
// the process, other threads get the point too. Objects on one thread must be destroyed in the
// reverse order of their construction. Throws std::bad_alloc.
//
// KtTraverser::Walk has one of its own. A host that calls the slots itself needs one, and so does
// one that formats a label's text with printf:
//
//   const KtNumericLocale point;
//   std::swprintf(...);
class KT_SCENE_API KtNumericLocale {
 public:
  KtNumericLocale();
  ~KtNumericLocale();
  KtNumericLocale(const KtNumericLocale&) = delete;
  KtNumericLocale& operator=(const KtNumericLocale&) = delete;

 private:
  // The C library's locale_t, on Windows the locale's name and null; both null while the thread's
  // locale is left as it is.
  void* before_ = nullptr;
  void* own_ = nullptr;
};
