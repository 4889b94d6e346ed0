#include "tests/support/loaded_module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

LoadedModule::LoadedModule(const std::string& path)
    : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  EXPECT_NE(handle_, nullptr) << dlerror();
}

LoadedModule::~LoadedModule() {
  if (handle_ != nullptr) {
    dlclose(handle_);
  }
}

void* LoadedModule::Address(const char* name) const {
  void* address = dlsym(handle_, name);
  EXPECT_NE(address, nullptr) << name;
  return address;
}
