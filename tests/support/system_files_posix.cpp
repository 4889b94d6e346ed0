#include "tests/support/system_files.h"

#include <cerrno>

const char16_t* const kFullDisk = u"/dev/full";
const long kFullDiskError = ENOSPC;
const char16_t* const kNullDevice = u"/dev/null";
