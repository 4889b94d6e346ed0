#include "tests/support/german_messages.h"

#include <clocale>

#include "ktscene/zu_message.h"
#include "tests/support/environment.h"

GermanMessages::GermanMessages(const char* directory)
    : locale_(std::setlocale(LC_MESSAGES, nullptr)), language_(environment("LANGUAGE")) {
  setEnvironment("LANGUAGE", "de");
  // gettext reads LANGUAGE in any locale except plain "C".
  for (const char* locale : {"C.UTF-8", "de_DE.UTF-8", "en_US.UTF-8"}) {
    if (std::setlocale(LC_MESSAGES, locale) != nullptr) {
      isSet_ = true;
      break;
    }
  }
  ZuSetCatalogueDirectory(directory);
}

GermanMessages::~GermanMessages() {
  restoreEnvironment("LANGUAGE", language_);
  std::setlocale(LC_MESSAGES, locale_.c_str());
  ZuSetCatalogueDirectory(nullptr);
}
