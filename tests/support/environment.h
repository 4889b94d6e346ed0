// Environment variables of this process.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

void setEnvironment(const std::string& name, const std::string& value);
void unsetEnvironment(const std::string& name);

inline std::optional<std::string> environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

inline void restoreEnvironment(const std::string& name, const std::optional<std::string>& value) {
  if (value) {
    setEnvironment(name, *value);
  } else {
    unsetEnvironment(name);
  }
}
