// What a process gives up before it reads what nobody has looked at.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace dxf2d {

// What a confined process may still do. Plain data, so that a reader that is a program of its own
// can have rules of its own.
struct Confinement {
  // Files, and directories with all that is below them, that may be read. Those that are missing
  // are passed over.
  std::vector<std::string> readable;
  // Open files that may be written, also when they are opened again.
  std::vector<int> writable;
  // Directories in which files may be made, written, read and removed.
  std::vector<std::string> scratch{};
  // Open files that may be opened again to be read.
  std::vector<int> reopened{};
  // Files, and directories with all that is below them, that may be read and run as programs.
  // Empty: no program may be started, and no process.
  std::vector<std::string> programs{};
};

// What is in force in a confined process.
struct ConfinementStatus {
  // The version of Landlock, which the rules on files need; 0 where the system has none.
  int fileRules = 0;
  // Whether system calls are filtered (seccomp): no sockets, no other programs or processes, no
  // signals to others, no stopping, no change to names, owners, modes, flags or attributes of files
  // or to resource limits, no way into other processes, the terminal or the kernel's
  // administration.
  bool callFilter = false;
};

// Files of the system that a program needs while it runs: shared libraries, character sets,
// translations, fonts, and what the system tells a process about itself.
std::vector<std::string> systemFiles();

// Confines this process for good; rules that the system does not have are left out in silence. For
// a process with one thread.
ConfinementStatus confine(const Confinement& rules);

// What confine would put in force.
ConfinementStatus availableConfinement();

// ---- Its parts

// Returns the version of Landlock, or 0 when the rules are not in force.
int restrictFiles(const Confinement& rules);
// 0 when the system has none.
int landlockVersion();

// Returns whether the filter is in force.
bool filterCalls(bool allowsPrograms);
bool hasCallFilter();

}  // namespace dxf2d
