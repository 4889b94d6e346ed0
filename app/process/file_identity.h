// Which file a name refers to.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

namespace dxf2d {

// Two names refer to one file exactly when these are equal, whatever links lead there.
struct FileIdentity {
  dev_t device = 0;
  ino_t number = 0;

  bool operator==(const FileIdentity&) const = default;
};

inline FileIdentity identityOf(const struct stat& status) { return {status.st_dev, status.st_ino}; }

// Links are followed. None when there is no such file.
inline std::optional<FileIdentity> identityOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? std::optional(identityOf(status)) : std::nullopt;
}

}  // namespace dxf2d
