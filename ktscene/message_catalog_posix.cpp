#include "ktscene/message_catalog.h"

#include <libintl.h>

#include <mutex>

#include "ktscene/utf_text.h"

namespace dxf2d {

namespace {

constexpr const char* kDomain = "ktscene";

void bindCatalog(const char* directory) {
  bindtextdomain(kDomain, directory);
  // Whatever the locale's own encoding is.
  bind_textdomain_codeset(kDomain, "UTF-8");
}

std::once_flag installedCatalogBound;

void bindInstalledCatalogOnce() {
  std::call_once(installedCatalogBound, bindCatalog, KT_SCENE_CATALOG_DIRECTORY);
}

}  // namespace

std::u16string translate(const char16_t* text) {
  bindInstalledCatalogOnce();
  const std::string original = toUtf8(text);
  const char* translated = dgettext(kDomain, original.c_str());
  return translated == original.c_str() ? text : fromUtf8(translated);
}

void setCatalogDirectory(const std::string& directory) {
  bindInstalledCatalogOnce();
  bindCatalog(directory.empty() ? KT_SCENE_CATALOG_DIRECTORY : directory.c_str());
}

}  // namespace dxf2d
