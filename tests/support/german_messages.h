// A user whose language is German.
#pragma once

#include <clocale>
#include <cstdlib>
#include <optional>
#include <string>

#include "ktscene/zu_message.h"

// Translates messages into German, from the catalogs in `directory`, until the end of the scope.
class GermanMessages {
 public:
  explicit GermanMessages(const char* directory) : before_(std::setlocale(LC_MESSAGES, nullptr)) {
    if (const char* language = std::getenv("LANGUAGE")) {
      language_ = language;
    }
    setenv("LANGUAGE", "de", 1);
    // gettext reads LANGUAGE in any locale except plain "C".
    for (const char* locale : {"C.UTF-8", "de_DE.UTF-8", "en_US.UTF-8"}) {
      if (std::setlocale(LC_MESSAGES, locale) != nullptr) {
        isSet_ = true;
        break;
      }
    }
    ZuSetCatalogueDirectory(directory);
  }
  ~GermanMessages() {
    if (language_) {
      setenv("LANGUAGE", language_->c_str(), 1);
    } else {
      unsetenv("LANGUAGE");
    }
    std::setlocale(LC_MESSAGES, before_.c_str());
    ZuSetCatalogueDirectory(nullptr);
  }
  GermanMessages(const GermanMessages&) = delete;
  GermanMessages& operator=(const GermanMessages&) = delete;

  // False if the C library has no locale that allows translations.
  bool IsSet() const { return isSet_; }

 private:
  std::string before_;
  std::optional<std::string> language_;
  bool isSet_ = false;
};
