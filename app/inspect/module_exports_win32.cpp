#include <cxxabi.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/host/plugin_module.h"
#include "app/inspect/module_exports.h"
#include "app/inspect/windows_module.h"

namespace dxf2d {

std::vector<std::string> exportedNames(const std::string& path) {
  std::ifstream file(filePath(path), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  std::optional<std::vector<std::string>> names = windowsExports(bytes);
  if (!names) {
    throw PluginError({path, tr("is not a module that can be loaded"), tr("check the name")});
  }
  return *std::move(names);
}

std::string writtenInCpp(const std::string& name) {
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> written(
      abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status), &std::free);
  return written == nullptr ? name : written.get();
}

}  // namespace dxf2d
