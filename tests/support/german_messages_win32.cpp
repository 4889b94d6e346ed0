#include "ktscene/zu_message.h"
#include "tests/support/environment.h"
#include "tests/support/german_messages.h"

// LC_ALL as it was: "C", which the tests run with, allows no translations.
GermanMessages::GermanMessages(const char* directory)
    : locale_(environment("LC_ALL").value_or("")),
      language_(environment("LANGUAGE")),
      isSet_(true) {
  setEnvironment("LC_ALL", "de_DE.UTF-8");
  setEnvironment("LANGUAGE", "de");
  ZuSetCatalogueDirectory(directory);
}

GermanMessages::~GermanMessages() {
  restoreEnvironment("LANGUAGE", language_);
  setEnvironment("LC_ALL", locale_);
  ZuSetCatalogueDirectory(nullptr);
}
