#include <sys/prctl.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "app/process/confinement.h"

namespace dxf2d {

namespace {

// Where a program that was not installed by the system has its libraries and translations.
void addOwnPlaces(std::vector<std::string>& files) {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) {
    return;
  }
  const std::filesystem::path directory = program.parent_path();
  // Programs of the installation stand in bin, those of its own in libexec/dxf2d.
  for (const auto& prefix : {directory.parent_path(), directory.parent_path().parent_path()}) {
    files.push_back((prefix / "lib").string());
    files.push_back((prefix / "share/locale").string());
  }
}

}  // namespace

std::vector<std::string> systemFiles() {
  std::vector<std::string> files{"/usr",           "/lib",
                                 "/lib64",         "/nix/store",
                                 "/gnu/store",     "/etc/ld.so.cache",
                                 "/etc/localtime", "/etc/locale.alias",
                                 "/etc/fonts",     "/var/cache/fontconfig",
                                 "/dev/null",      "/dev/urandom",
                                 "/proc/self",     "/proc/meminfo",
                                 "/proc/cpuinfo",  "/sys/devices/system/cpu"};
  addOwnPlaces(files);
  if (const char* const modules = std::getenv("GCONV_PATH")) {
    files.emplace_back(modules);
  }
  return files;
}

ConfinementStatus confine(const Confinement& rules) {
  // Without this, both parts are for root alone.
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
    return {};
  }
  ConfinementStatus status;
  status.fileRules = restrictFiles(rules);
  status.callFilter = filterCalls(!rules.programs.empty());
  return status;
}

ConfinementStatus availableConfinement() { return {landlockVersion(), hasCallFilter()}; }

}  // namespace dxf2d
