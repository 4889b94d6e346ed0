#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "app/cli/translation.h"
#include "app/host/plugin_module.h"
#include "app/inspect/module_exports.h"
#include "platform/windows_api.h"
#include "platform/windows_path.h"

namespace dxf2d {

namespace {

struct FreeModule {
  void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Image = std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeModule>;

// Laid out as if it were loaded; nothing of it is run.
Image mapImage(const std::string& path) {
  Image image(LoadLibraryExW(windowsPath(path).c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES));
  if (image == nullptr) {
    throw PluginError({path, tr("is not a module that can be loaded"), tr("check the name")});
  }
  return image;
}

template <typename Type>
const Type* at(HMODULE image, DWORD offset) {
  return reinterpret_cast<const Type*>(reinterpret_cast<const char*>(image) + offset);
}

}  // namespace

std::vector<std::string> exportedNames(const std::string& path) {
  const Image image = mapImage(path);
  const auto* const head = at<IMAGE_NT_HEADERS>(
      image.get(), static_cast<DWORD>(at<IMAGE_DOS_HEADER>(image.get(), 0)->e_lfanew));
  const IMAGE_DATA_DIRECTORY& place =
      head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  std::vector<std::string> names;
  if (place.Size != 0) {
    const auto* const exports = at<IMAGE_EXPORT_DIRECTORY>(image.get(), place.VirtualAddress);
    const auto* const offsets = at<DWORD>(image.get(), exports->AddressOfNames);
    for (DWORD i = 0; i < exports->NumberOfNames; ++i) {
      names.emplace_back(at<char>(image.get(), offsets[i]));
    }
  }
  std::ranges::sort(names);
  return names;
}

std::string writtenInCpp(const std::string& name) {
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> written(
      abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status), &std::free);
  return written == nullptr ? name : written.get();
}

}  // namespace dxf2d
