// Who may use an output file.
#pragma once

#include <sys/types.h>

namespace dxf2d {

// Gives the open file `file` the owner, group, mode, access control list and extended attributes of
// `replaced`. Where the owner, group or list cannot be kept, nobody but the owner gets rights that
// they did not have on `replaced`. Returns 0, or an errno.
int giveRightsOf(int replaced, int file);

// Gives the open file `file`, made in `directory`, the rights of any new file there: what the umask
// leaves, or what the directory's default access control list says. Returns 0, or an errno.
int giveRightsOfNewFile(int directory, int file);

// The permission bits with which nobody gains rights when a file of mode `mode` changes its owner
// or its group.
mode_t narrowedMode(mode_t mode, bool isOwnerKept, bool isGroupKept);

}  // namespace dxf2d
