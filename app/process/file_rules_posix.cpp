// Landlock (landlock(7)).
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

#include "app/process/confinement.h"
#include "app/process/descriptor.h"

namespace dxf2d {

namespace {

// The rights of later versions than the headers may know.
constexpr std::uint64_t kExecute = 1ULL << 0;
constexpr std::uint64_t kWriteFile = 1ULL << 1;
constexpr std::uint64_t kReadFile = 1ULL << 2;
constexpr std::uint64_t kReadDirectory = 1ULL << 3;
constexpr std::uint64_t kRemoveFile = 1ULL << 5;
constexpr std::uint64_t kMakeFile = 1ULL << 8;
constexpr std::uint64_t kTruncate = 1ULL << 14;

// All rights of the versions 1 to 5: with the first 13, to refer (2), to truncate (3), to control
// devices (5).
constexpr std::array<std::uint64_t, 5> kRightsOfVersion{
    (1ULL << 13) - 1, (1ULL << 14) - 1, (1ULL << 15) - 1, (1ULL << 15) - 1, (1ULL << 16) - 1};

// Connections by TCP, from version 4 on.
constexpr std::uint64_t kTcpRights = 3;
// Abstract sockets of others and signals to others, from version 6 on.
constexpr std::uint64_t kScopes = 3;

// As version 6 has it; older ones take its beginning.
struct RuleSetAttributes {
  std::uint64_t files = 0;
  std::uint64_t network = 0;
  std::uint64_t scopes = 0;
};

std::uint64_t rightsOf(int version) {
  const auto known = std::min<std::size_t>(static_cast<std::size_t>(version), 5);
  return kRightsOfVersion[known - 1];
}

// Systems refuse what they do not know, but take longer attributes that are zero there.
Descriptor openRuleSet(int version) {
  RuleSetAttributes attributes;
  attributes.files = rightsOf(version);
  attributes.network = version >= 4 ? kTcpRights : 0;
  attributes.scopes = version >= 6 ? kScopes : 0;
  return Descriptor(
      static_cast<int>(syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
}

class RuleSet {
 public:
  explicit RuleSet(int version) : set_(openRuleSet(version)), known_(rightsOf(version)) {}

  bool IsOpen() const { return set_.IsOpen(); }

  // A file has no rights of directories.
  void Allow(int file, std::uint64_t rights) {
    struct stat status {};
    constexpr std::uint64_t kFileRights = kExecute | kWriteFile | kReadFile | kTruncate;
    if (fstat(file, &status) != 0) {
      return;
    }
    landlock_path_beneath_attr rule{};
    rule.allowed_access = rights & known_ & (S_ISDIR(status.st_mode) ? ~0ULL : kFileRights);
    rule.parent_fd = file;
    const bool isAdded =
        syscall(SYS_landlock_add_rule, set_.Number(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
    // Pipes, which need no rule, have none.
    isComplete_ = isComplete_ && (isAdded || errno == EBADFD);
  }

  void Allow(const std::string& path, std::uint64_t rights) {
    const Descriptor file(open(path.c_str(), O_PATH | O_CLOEXEC));
    if (file.IsOpen()) {
      Allow(file.Number(), rights);
    }
  }

  // Not with a part of the rules, which would forbid what the task needs.
  bool Restrict() const {
    return isComplete_ && syscall(SYS_landlock_restrict_self, set_.Number(), 0) == 0;
  }

 private:
  Descriptor set_;
  std::uint64_t known_;
  bool isComplete_ = true;
};

}  // namespace

int landlockVersion() {
  const long version =
      syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  return version > 0 ? static_cast<int>(version) : 0;
}

int restrictFiles(const Confinement& rules) {
  const int version = landlockVersion();
  if (version == 0) {
    return 0;
  }
  RuleSet set(version);
  if (!set.IsOpen()) {
    return 0;
  }
  for (const std::string& path : rules.readable) {
    set.Allow(path, kReadFile | kReadDirectory);
  }
  for (const std::string& path : rules.programs) {
    set.Allow(path, kReadFile | kReadDirectory | kExecute);
  }
  for (const int file : rules.reopened) {
    set.Allow(file, kReadFile);
  }
  for (const int file : rules.writable) {
    set.Allow(file, kReadFile | kWriteFile | kTruncate);
  }
  for (const std::string& path : rules.scratch) {
    set.Allow(path, kReadFile | kReadDirectory | kWriteFile | kTruncate | kMakeFile | kRemoveFile);
  }
  return set.Restrict() ? version : 0;
}

}  // namespace dxf2d
