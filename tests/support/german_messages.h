// A user whose language is German.
#pragma once

#include <optional>
#include <string>

// Translates messages into German, from the catalogs in `directory`, until the end of the scope.
class GermanMessages {
 public:
  explicit GermanMessages(const char* directory);
  ~GermanMessages();
  GermanMessages(const GermanMessages&) = delete;
  GermanMessages& operator=(const GermanMessages&) = delete;

  // False if the C library has no locale that allows translations.
  bool IsSet() const { return isSet_; }

 private:
  // The locale of messages; on Windows the variable that says it.
  std::string locale_;
  std::optional<std::string> language_;
  bool isSet_ = false;
};
