#include "app/output/output_failures.h"

#include <system_error>

namespace dxf2d {

std::string reasonOf(int error) { return std::generic_category().message(error); }

std::string directoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) {
    return ".";
  }
  return slash == 0 ? "/" : path.substr(0, slash);
}

void failCreating(const std::string& name, const std::string& reason, const std::string& remedy) {
  throw OutputError(kExitOutputNotMade, {name, "cannot be created: " + reason, remedy});
}

void failCreatingBeside(const std::string& name, const std::string& target, int error) {
  const std::string directory = "the directory '" + directoryOf(target) + "'";
  switch (error) {
    case ENOENT:
      failCreating(name, directory + " does not exist", "create it or choose another");
    case ENOTDIR:
      failCreating(name, "'" + directoryOf(target) + "' is not a directory", "choose another");
    case EACCES:
    case EPERM:
    case EROFS:
      failCreating(name, directory + " is not writable",
                   "change its permissions or choose another");
    case ENAMETOOLONG:
      failCreating(name, "the name is too long", "choose a shorter one");
    case ELOOP:
      failCreating(name, "its symbolic links form a loop", "fix them or choose another name");
    default:
      failCreating(name, reasonOf(error), kCheckDisk);
  }
}

void failExisting(const std::string& name) {
  throw OutputError(kExitOutputExists,
                    {name, "already exists", "use --force to replace it, or choose another name"});
}

void failWriting(const std::string& name, int error) {
  throw OutputError(kExitWriteFailed, {name, "cannot be written: " + reasonOf(error), kCheckDisk});
}

}  // namespace dxf2d
