// Files that the operating system has for special ends.
#pragma once

// Takes no byte: its disk is full. On Windows it is the device of the Linux below Wine.
extern const char16_t* const kFullDisk;
// The operating system's error number for that.
extern const long kFullDiskError;
// Takes every byte and has none.
extern const char16_t* const kNullDevice;
