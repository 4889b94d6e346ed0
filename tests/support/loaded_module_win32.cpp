#include <gtest/gtest.h>

#include "platform/windows_api.h"
#include "platform/windows_path.h"
#include "tests/support/loaded_module.h"

LoadedModule::LoadedModule(const std::string& path)
    : handle_(LoadLibraryW(dxf2d::windowsPath(path).c_str())) {
  EXPECT_NE(handle_, nullptr) << GetLastError();
}

LoadedModule::~LoadedModule() {
  if (handle_ != nullptr) {
    FreeLibrary(static_cast<HMODULE>(handle_));
  }
}

void* LoadedModule::Address(const char* name) const {
  const FARPROC address = GetProcAddress(static_cast<HMODULE>(handle_), name);
  EXPECT_NE(address, nullptr) << name;
  return reinterpret_cast<void*>(address);
}
