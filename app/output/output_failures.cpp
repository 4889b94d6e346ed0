#include "app/output/output_failures.h"

#include "app/cli/path_separators.h"
#include "app/cli/translation.h"

namespace dxf2d {

std::string checkDisk() { return tr("check the disk or choose another location"); }

std::string directoryOf(const std::string& path) {
  const std::size_t slash = path.find_last_of(kPathSeparators);
  if (slash == std::string::npos) {
    return ".";
  }
  return slash == 0 ? "/" : path.substr(0, slash);
}

void failCreating(const std::string& name, const std::string& reason, const std::string& remedy) {
  throw OutputError(kExitOutputNotMade, {name, tr("cannot be created: %1", {reason}), remedy});
}

void failCreatingBeside(const std::string& name, const std::string& target, int error) {
  const std::string directory = directoryOf(target);
  switch (error) {
    case ENOENT:
      failCreating(name, tr("the directory '%1' does not exist", {directory}),
                   tr("create it or choose another"));
    case ENOTDIR:
      failCreating(name, tr("'%1' is not a directory", {directory}), tr("choose another"));
    case EACCES:
    case EPERM:
    case EROFS:
      failCreating(name, tr("the directory '%1' is not writable", {directory}),
                   tr("change its permissions or choose another"));
    case ENAMETOOLONG:
      failCreating(name, tr("the name is too long"), tr("choose a shorter one"));
    case ELOOP:
      failCreating(name, tr("its symbolic links form a loop"),
                   tr("fix them or choose another name"));
    default:
      failCreating(name, reasonOf(error), checkDisk());
  }
}

void failExisting(const std::string& name) {
  throw OutputError(kExitOutputExists, {name, tr("already exists"),
                                        tr("use --force to replace it, or choose another name")});
}

void failWriting(const std::string& name, int error) {
  throw OutputError(kExitWriteFailed,
                    {name, tr("cannot be written: %1", {reasonOf(error)}), checkDisk()});
}

}  // namespace dxf2d
