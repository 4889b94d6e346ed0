#include "plugin/application.h"

#include "session/export_session.h"

namespace dxf2d {

namespace {

// Before the application object, so that the session is built first and destroyed last.
[[maybe_unused]] const ExportSession& loadedSession = exportSession();

}  // namespace

ExportApplication application;

}  // namespace dxf2d
