#include "platform/cwin_app.h"

inline namespace kt_platform {

CWinApp::CWinApp(const char16_t* appName) : m_strAppName(appName) {}

CWinApp::~CWinApp() = default;

bool CWinApp::InitInstance() { return true; }

}  // namespace kt_platform
