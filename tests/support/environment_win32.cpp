#include <cstdlib>

#include "tests/support/environment.h"

void setEnvironment(const std::string& name, const std::string& value) {
  _putenv_s(name.c_str(), value.c_str());
}

void unsetEnvironment(const std::string& name) { _putenv_s(name.c_str(), ""); }
