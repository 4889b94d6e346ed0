#include <libintl.h>

#include <filesystem>
#include <system_error>

#include "app/cli/translation.h"

namespace dxf2d {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDomain = "dxf2d";

}  // namespace

std::string tr(const char* text, std::initializer_list<std::string_view> values) {
  // gettext returns the catalog's own header for the empty text.
  std::string_view rest = *text == '\0' ? text : dgettext(kDomain, text);
  std::string result;
  for (std::size_t at = 0; (at = rest.find('%')) != std::string_view::npos;) {
    const std::size_t number =
        at + 1 < rest.size() ? static_cast<unsigned char>(rest[at + 1]) - std::size_t{'1'} : 9;
    result += rest.substr(0, at);
    if (number < values.size()) {
      result += values.begin()[number];
      rest.remove_prefix(at + 2);
    } else {
      result += '%';
      rest.remove_prefix(at + 1);
    }
  }
  return result.append(rest);
}

void findCatalogs() {
  std::error_code error;
  fs::path directory = fs::read_symlink("/proc/self/exe", error).parent_path();
  constexpr int kLevels = 3;
  for (int level = 0; level < kLevels; ++level) {
    directory = directory.parent_path();
    const fs::path catalogs = directory / DXF2D_LOCALE_DIRECTORY;
    if (fs::is_directory(catalogs, error)) {
      bindtextdomain(kDomain, catalogs.c_str());
      // Whatever the locale's own encoding is.
      bind_textdomain_codeset(kDomain, "UTF-8");
      return;
    }
  }
}

}  // namespace dxf2d
