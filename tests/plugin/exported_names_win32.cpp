#include <gtest/gtest.h>

#include "platform/windows_api.h"
#include "platform/windows_path.h"
#include "tests/plugin/exported_names.h"

// Read in the loaded library, where every address is relative to its begin.
std::multiset<std::string> exportedNames(const std::string& path) {
  std::multiset<std::string> names;
  const HMODULE library = LoadLibraryW(dxf2d::windowsPath(path).c_str());
  if (library == nullptr) {
    ADD_FAILURE() << GetLastError();
    return names;
  }
  const auto* const begin = reinterpret_cast<const char*>(library);
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(begin);
  const auto* const head = reinterpret_cast<const IMAGE_NT_HEADERS*>(begin + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& place =
      head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  const auto* const table =
      reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(begin + place.VirtualAddress);
  const auto* const name = reinterpret_cast<const DWORD*>(begin + table->AddressOfNames);
  for (DWORD i = 0; i < table->NumberOfNames; ++i) {
    names.insert(begin + name[i]);
  }
  // Functions that are exported by their number alone would have no name.
  EXPECT_EQ(table->NumberOfFunctions, table->NumberOfNames);
  FreeLibrary(library);
  return names;
}
