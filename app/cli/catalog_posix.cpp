#include <libintl.h>

#include <clocale>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "app/cli/catalog.h"
#include "app/cli/own_program.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

constexpr const char* kDomain = "dxf2d";

}  // namespace

const char* catalogText(const char* text) {
  // gettext returns the catalog's own header for the empty text.
  return *text == '\0' ? text : dgettext(kDomain, text);
}

const char* catalogText(const char* one, const char* many, std::uint64_t count) {
  return dngettext(kDomain, one, many, count);
}

void findCatalogs() {
  // Nothing else: numbers in drawings always have a point.
  std::setlocale(LC_MESSAGES, "");
  const std::string_view locale = std::setlocale(LC_MESSAGES, nullptr);
  if (locale == "C" || locale == "POSIX") {
    // gettext translates nothing.
    return;
  }
  std::error_code error;
  fs::path directory = ownProgram().parent_path();
  constexpr int kLevels = 3;
  for (int level = 0; level < kLevels; ++level) {
    directory = directory.parent_path();
    const fs::path catalogs = directory / DXF2D_LOCALE_DIRECTORY;
    if (fs::is_directory(catalogs, error)) {
      bindtextdomain(kDomain, catalogs.c_str());
      // Whatever the locale's own encoding is.
      bind_textdomain_codeset(kDomain, "UTF-8");
      // The system's reasons, which are parts of our sentences.
      bind_textdomain_codeset("libc", "UTF-8");
      static_cast<void>(dgettext(kDomain, "Options"));
      return;
    }
  }
}

}  // namespace dxf2d
