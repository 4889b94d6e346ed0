#include "platform/cwin_app.h"

CWinApp::CWinApp(const char16_t* appName) : m_strAppName(appName) {}

CWinApp::~CWinApp() = default;

bool CWinApp::InitInstance() { return true; }
