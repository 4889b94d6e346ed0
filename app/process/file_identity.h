// Which file a name refers to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace dxf2d {

// Two names refer to one file exactly when these are equal, whatever links lead there.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;

  bool operator==(const FileIdentity&) const = default;
};

// Links are followed. None when there is no such file.
std::optional<FileIdentity> identityOf(const std::string& path);

}  // namespace dxf2d
