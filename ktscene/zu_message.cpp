#include "ktscene/zu_message.h"

#include <libintl.h>

#include <atomic>
#include <cstdio>
#include <mutex>

#include "ktscene/utf_text.h"

namespace {

using dxf2d::fromUtf8;
using dxf2d::toUtf8;

constexpr const char* kDomain = "ktscene";

std::atomic<ZuErrorBoxHandler> errorBoxHandler = nullptr;

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

std::u16string ZuTranslateText(const char16_t* text) {
  // gettext returns the catalog's own header for the empty text.
  if (text == nullptr || *text == u'\0') {
    return {};
  }
  bindInstalledCatalogOnce();
  const std::string original = toUtf8(text);
  const char* translated = dgettext(kDomain, original.c_str());
  return translated == original.c_str() ? text : fromUtf8(translated);
}

void ZuSetCatalogueDirectory(const char* directory) {
  bindInstalledCatalogOnce();
  const bool isGiven = directory != nullptr && *directory != '\0';
  bindCatalog(isGiven ? directory : KT_SCENE_CATALOG_DIRECTORY);
}

void ZuErrorBox(void* owner, const char16_t* title, const char16_t* text, int style) {
  if (title == nullptr) {
    title = u"";
  }
  if (text == nullptr) {
    text = u"";
  }
  if (const ZuErrorBoxHandler handler = errorBoxHandler) {
    handler(owner, title, text, style);
    return;
  }
  const std::string line = toUtf8(title) + ": " + toUtf8(text) + "\n";
  std::fputs(line.c_str(), stderr);
}

ZuErrorBoxHandler ZuSetErrorBoxHandler(ZuErrorBoxHandler handler) {
  return errorBoxHandler.exchange(handler);
}
