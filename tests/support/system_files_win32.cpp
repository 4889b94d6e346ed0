#include "tests/support/system_files.h"

#include "platform/windows_api.h"

const char16_t* const kFullDisk = uR"(Z:\dev\full)";
const long kFullDiskError = ERROR_DISK_FULL;
const char16_t* const kNullDevice = u"NUL";
