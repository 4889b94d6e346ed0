#include "ktscene/message_catalog.h"

#include <libintl.h>

#include <mutex>

#include "ktscene/library_folder.h"
#include "ktscene/utf_text.h"

namespace dxf2d {

namespace {

constexpr const char* kDomain = "ktscene";

void bindCatalog(const char* directory) {
  bindtextdomain(kDomain, directory);
  // Whatever the locale's own encoding is.
  bind_textdomain_codeset(kDomain, "UTF-8");
}

// Without the library's place, catalogs are those of the system's own directory.
void bindInstalledCatalog() {
  if (const std::string folder = libraryFolder(); !folder.empty()) {
    bindCatalog((folder + "/" KT_SCENE_CATALOG_DIRECTORY).c_str());
  }
}

std::once_flag installedCatalogBound;

}  // namespace

std::u16string translate(const char16_t* text) {
  std::call_once(installedCatalogBound, bindInstalledCatalog);
  const std::string original = toUtf8(text);
  const char* translated = dgettext(kDomain, original.c_str());
  return translated == original.c_str() ? text : fromUtf8(translated);
}

void setCatalogDirectory(const std::string& directory) {
  // So that a translation that comes later does not undo this.
  std::call_once(installedCatalogBound, [] {});
  if (directory.empty()) {
    bindInstalledCatalog();
  } else {
    bindCatalog(directory.c_str());
  }
}

}  // namespace dxf2d
