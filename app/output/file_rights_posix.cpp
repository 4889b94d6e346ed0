#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "app/output/file_rights.h"
#include "app/output/output_failures.h"

namespace dxf2d {

namespace {

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr const char* kDefaultList = "system.posix_acl_default";

constexpr mode_t kPermissions = 0777;
constexpr mode_t kOwnerPermissions = 0700;
// Of a new file, before the umask.
constexpr mode_t kNewFile = 0666;

// An extended attribute: its value; empty when there is none.
struct Attribute {
  std::string value;
  // False when it cannot be told whether there is one.
  bool isKnown = true;
};

Attribute attributeOf(int file, const char* name) {
  const ssize_t size = fgetxattr(file, name, nullptr, 0);
  if (size < 0) {
    return {"", errno == ENODATA || errno == ENOTSUP};
  }
  std::string value(static_cast<std::size_t>(size), '\0');
  const ssize_t read = fgetxattr(file, name, value.data(), value.size());
  return read == size ? Attribute{value, true} : Attribute{"", false};
}

// Rights go with the list, and the rest belongs to the bytes of the file that it is set on.
bool isCopied(std::string_view name) {
  for (const std::string_view left :
       {"system.", "security.capability", "security.ima", "security.evm"}) {
    if (name.starts_with(left)) {
      return false;
    }
  }
  return true;
}

// As far as that is permitted.
void copyAttributes(int from, int to) {
  const ssize_t size = flistxattr(from, nullptr, 0);
  if (size <= 0) {
    return;
  }
  std::string names(static_cast<std::size_t>(size), '\0');
  if (flistxattr(from, names.data(), names.size()) != size) {
    return;
  }
  // Each name ends with a null character.
  for (std::size_t at = 0; at < names.size(); at += std::strlen(&names[at]) + 1) {
    const char* const name = &names[at];
    if (!isCopied(name)) {
      continue;
    }
    if (const Attribute attribute = attributeOf(from, name); attribute.isKnown) {
      fsetxattr(to, name, attribute.value.data(), attribute.value.size(), 0);
    }
  }
}

// Whether the file could be given to `owner` or `group`; -1 is for none.
bool giveTo(int file, uid_t owner, gid_t group) {
  return retryInterrupted([&] { return fchown(file, owner, group); }) == 0;
}

int changeMode(int file, mode_t mode) {
  return retryInterrupted([&] { return fchmod(file, mode); }) == 0 ? 0 : errno;
}

// Mode bits that a default list gives a new file, if it names all three classes: a version, then
// entries of a tag, permissions and a number, each little-endian (acl(5), linux/posix_acl_xattr.h).
std::optional<mode_t> modeOfList(const std::string& list) {
  constexpr std::size_t kHeader = 4;
  constexpr std::size_t kEntry = 8;
  enum Tag : unsigned { kOwner = 0x01, kGroup = 0x04, kMask = 0x10, kOther = 0x20 };
  std::map<unsigned, mode_t> rightsOf;
  for (std::size_t at = kHeader; at + kEntry <= list.size(); at += kEntry) {
    // The high bytes are zero. Entries of named users and groups are not asked for.
    rightsOf[static_cast<unsigned char>(list[at])] = static_cast<unsigned char>(list[at + 2]) & 7U;
  }
  if (!rightsOf.contains(kOwner) || !rightsOf.contains(kGroup) || !rightsOf.contains(kOther)) {
    return std::nullopt;
  }
  const mode_t group = rightsOf.contains(kMask) ? rightsOf[kMask] : rightsOf[kGroup];
  return rightsOf[kOwner] << 6 | group << 3 | rightsOf[kOther];
}

// It can only be read by setting it, which threads must not do at once.
mode_t currentUmask() {
  static std::mutex turns;
  const std::lock_guard turn(turns);
  const mode_t mask = umask(0);
  umask(mask);
  return mask;
}

}  // namespace

mode_t narrowedMode(mode_t mode, bool isOwnerKept, bool isGroupKept) {
  const mode_t owner = mode >> 6 & 7;
  mode_t group = mode >> 3 & 7;
  mode_t other = mode & 7;
  if (!isGroupKept) {
    // The members of either group are now among the others, or the reverse.
    group &= other;
    other = group;
  }
  if (!isOwnerKept) {
    // The former owner is now in the group or among the others.
    group &= owner;
    other &= owner;
  }
  return owner << 6 | group << 3 | other;
}

int giveRightsOf(int replaced, int file) {
  struct stat before {};
  struct stat now {};
  if (fstat(replaced, &before) != 0 || fstat(file, &now) != 0) {
    return errno;
  }
  copyAttributes(replaced, file);
  const uid_t sameOwner = static_cast<uid_t>(-1);
  const bool isGroupKept = now.st_gid == before.st_gid || giveTo(file, sameOwner, before.st_gid);
  const bool isOwnerKept =
      now.st_uid == before.st_uid || giveTo(file, before.st_uid, static_cast<gid_t>(-1));
  const Attribute list = attributeOf(replaced, kAccessList);
  const mode_t mode = before.st_mode & kPermissions;
  if (!list.isKnown) {
    return changeMode(file, mode & kOwnerPermissions);
  }
  if (!list.value.empty()) {
    // The list contains the mode.
    const bool isListKept =
        isGroupKept && isOwnerKept &&
        fsetxattr(file, kAccessList, list.value.data(), list.value.size(), 0) == 0;
    return isListKept ? 0 : changeMode(file, mode & kOwnerPermissions);
  }
  // From the directory. A wider mode would make its entries effective.
  if (fremovexattr(file, kAccessList) != 0 && errno != ENODATA && errno != ENOTSUP) {
    return changeMode(file, mode & kOwnerPermissions);
  }
  return changeMode(file, narrowedMode(mode, isOwnerKept, isGroupKept));
}

int giveRightsOfNewFile(int directory, int file) {
  const Attribute list = attributeOf(directory, kDefaultList);
  if (!list.isKnown && !attributeOf(file, kAccessList).value.empty()) {
    // The directory cannot be read, and the file has a list from it: as it was made.
    return 0;
  }
  const std::optional<mode_t> listed = modeOfList(list.value);
  return changeMode(file, listed ? kNewFile & *listed : kNewFile & ~currentUmask());
}

}  // namespace dxf2d
