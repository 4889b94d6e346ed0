// The application class of the framework, as far as a loadable module needs it.
#pragma once

#include "platform/cstring.h"
#include "platform/export.h"

inline namespace kt_platform {

// A module derives one class from this and has one object of it, which exists from load to unload.
class KT_PLATFORM_API CWinApp {
 public:
  // `appName` may be null: the application then has no name of its own.
  explicit CWinApp(const char16_t* appName = nullptr);
  virtual ~CWinApp();
  CWinApp(const CWinApp&) = delete;
  CWinApp& operator=(const CWinApp&) = delete;

  // Initializes the module. Returns whether that succeeded.
  virtual bool InitInstance();

  // The name that the constructor was given.
  CString m_strAppName;
};

}  // namespace kt_platform
