#include "app/cli/program_arguments.h"

#include <filesystem>

#include "platform/windows_api.h"
// It needs the one above.
#include <shellapi.h>

namespace dxf2d {

ProgramArguments::ProgramArguments(int /*count*/, char** /*words*/) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  texts_.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    // The C++ library's paths are UTF-8 where they are bytes.
    texts_.push_back(std::filesystem::path(words[i]).string());
  }
  LocalFree(words);
  for (std::string& text : texts_) {
    words_.push_back(text.data());
  }
  words_.push_back(nullptr);
}

}  // namespace dxf2d
