// Runs a program on a model: an importer, or what unpacks it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/output/scratch_file.h"
#include "app/process/input_task.h"
#include "app/process/worker_program.h"

namespace dxf2d {

inline constexpr const char* kImportTask = "import";

// The task of the worker program that becomes such a program: confined to reading the model's
// directory, and the system's files and the program's own, which it may also run, and to writing
// its result.
WorkerTask importTask();

// A file to read.
struct ImportInput {
  std::string path;
  // Stands for it in messages.
  std::string name;
};

// A program and what it may use.
struct ImportProgram {
  // In messages.
  std::string name;
  std::vector<std::string> command;
  // What it may read and run beside the system's files.
  std::string ownFiles;
  // The directory that it may read beside the model, and the one that it may write, if any.
  std::string readable;
  std::string scratch{};
  // What to do about a file that it cannot read.
  std::string remedy{};
  // The file that it may write; -1 for none.
  int result = -1;
};

// Returns kExitDone for a regular file, or another ExitCode with a message printed.
int requireRegular(const ImportInput& model);

// Runs a program on `model`, whose path is absolute, within the limits of `work`; what it prints
// goes to `messages`, whose last line is its reason for a failure. Returns an ExitCode, with a
// message printed unless that is kExitDone. Raises `peakMemory` to the bytes that it took at most.
int runOn(const ImportInput& model, const ImportProgram& program, const ScratchFile& messages,
          InputTask& work, std::uint64_t& peakMemory);

// The last line of a file that is not empty, without stops at its end; of a long one, its
// beginning.
std::string lastLineOf(const std::string& path);

}  // namespace dxf2d
