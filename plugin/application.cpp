// The objects that live from the module's load to its unload.
#include "platform/cwin_app.h"
#include "session/export_session.h"

namespace {

// The module is a regular library of the framework, which asks for one application object in it.
class ExportApplication : public CWinApp {
 public:
  ExportApplication() : CWinApp(nullptr) {}
  bool InitInstance() override {
    CWinApp::InitInstance();
    return true;
  }
};

// In this order: the session is built first and so ends last.
[[maybe_unused]] const ExportSession& loadedSession = exportSession();
ExportApplication application;

}  // namespace
