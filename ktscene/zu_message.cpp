#include "ktscene/zu_message.h"

#include <atomic>

#include "ktscene/error_box.h"
#include "ktscene/message_catalog.h"

namespace {

std::atomic<ZuErrorBoxHandler> errorBoxHandler = nullptr;

}  // namespace

std::u16string ZuTranslateText(const char16_t* text) {
  // A catalog's text for the empty one is its own header.
  if (text == nullptr || *text == u'\0') {
    return {};
  }
  return dxf2d::translate(text);
}

void ZuSetCatalogueDirectory(const char* directory) {
  dxf2d::setCatalogDirectory(directory != nullptr ? directory : "");
}

void ZuErrorBox(void* owner, const char16_t* title, const char16_t* text, int style) {
  if (title == nullptr) {
    title = u"";
  }
  if (text == nullptr) {
    text = u"";
  }
  const ZuErrorBoxHandler handler = errorBoxHandler;
  const ZuErrorBoxHandler show = handler != nullptr ? handler : dxf2d::showErrorBox;
  show(owner, title, text, style);
}

ZuErrorBoxHandler ZuSetErrorBoxHandler(ZuErrorBoxHandler handler) {
  return errorBoxHandler.exchange(handler);
}
