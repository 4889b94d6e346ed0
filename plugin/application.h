// The application object of the module.
#pragma once

#include "platform/cwin_app.h"

namespace dxf2d {

// The module is a regular library of the framework, which requires one application object in it.
class ExportApplication : public CWinApp {
 public:
  // Without an application name.
  ExportApplication() : CWinApp(nullptr) {}
  // Always succeeds.
  bool InitInstance() override {
    CWinApp::InitInstance();
    return true;
  }
};

// Exists from the module's load to its unload.
extern ExportApplication application;

}  // namespace dxf2d
