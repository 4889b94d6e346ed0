// Output files that are complete under the user's name, or not there at all.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/cli/command.h"
#include "app/output/output_directory.h"
#include "app/output/output_failures.h"
#include "app/output/work_file.h"
#include "app/process/descriptor.h"

namespace dxf2d {

// Where the symbolic links at `path` lead, whether or not there is a file at their end; a name of
// what this process has open, such as /dev/stdout, is an end too. Throws OutputError.
std::string followLinks(const std::string& path);

// Whether an existing file of the output's name may be replaced.
enum class Existing { kKeep, kReplace };

// -f and --force, which set `existing` to kReplace.
Option forceOption(Existing& existing);

// An output under construction. The bytes go to a file in the same directory that nobody else may
// use (see WorkFile), and Commit puts it under the user's name in one step; without Commit the
// destructor removes it, and whatever stood under the name before is untouched. Termination signals
// are blocked until then (see ScopedSignalBlock).
//
// A symbolic link is followed: the file that it names is made or replaced. What is neither a file
// nor a directory (a FIFO, a terminal, /dev/null), or is open already (/dev/stdout, /dev/fd/3), is
// written in place, since it cannot be replaced.
//
// Owned and used by one thread. A writer of its own, such as the plug-in, may open Path() and
// truncate it, and must have closed it before Commit.
class OutputFile {
 public:
  // Creates the work file. Throws OutputError when that cannot be, also when the file under the
  // name may not be written, is to be kept, or is being written by a program that locks it, as
  // every host of the plug-in does, and when a block device is to be kept.
  OutputFile(const std::string& path, Existing existing);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Where the bytes go until Commit: the work file, or the user's path where it is written in
  // place.
  const std::string& Path() const { return path_; }
  bool IsWrittenInPlace() const { return inPlace_; }
  // The open work file; not where the output is written in place.
  int WorkDescriptor() const { return work_->Number(); }
  // Whether the bytes go where this process prints.
  bool IsStandardOutput() const;
  // Appends. Throws OutputError.
  void Write(std::string_view bytes);
  // Brings the bytes to the disk and puts the file under its name, with the rights of the file that
  // it replaces (see giveRightsOf) or of a new one. Throws OutputError, also when the name no
  // longer leads to the directory that it led to at first; the work file is then removed by the
  // destructor. To be called once.
  void Commit();

 private:
  void CheckFileThere();
  void OpenInPlace();
  int WrittenFile() const { return work_ ? work_->Number() : file_.Number(); }
  void SyncWork();
  void PutInPlace();
  bool LeadsToDirectory() const;

  // As the user wrote it, for messages.
  std::string name_;
  // What the name leads to.
  std::string target_;
  std::string path_;
  Existing existing_;
  OutputDirectory directory_;
  // The file already there, locked while this lives.
  Descriptor replaced_;
  // Unless the target is written in place.
  std::optional<WorkFile> work_;
  // True when the target cannot be replaced and is written in place.
  bool inPlace_ = false;
  // That target, once it is open.
  Descriptor file_;
};

}  // namespace dxf2d
