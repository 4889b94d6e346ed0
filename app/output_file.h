// The file that a command leaves behind: whole under the user's name, or not there at all.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/deferred_end.h"
#include "app/descriptor.h"
#include "app/failure.h"

// Why an output cannot be had. The code is kExitOutputNotMade, kExitOutputExists or
// kExitWriteFailed.
class OutputError : public Failure {
 public:
  using Failure::Failure;
};

// Where the symbolic links at `path` lead, whether or not there is a file at their end; a name of
// what this process has open, such as /dev/stdout, is an end too. Throws OutputError.
std::string followLinks(const std::string& path);

// Whether a file already under the output's name may be replaced.
enum class Existing { kKeep, kReplace };

// An output under construction. The bytes go to a temporary file in the same directory, and Commit
// puts it under the user's name in one step; without Commit the destructor removes it, and whatever
// stood under the name before is untouched. A request to end waits for that (see DeferredEnd).
//
// A symbolic link is followed: the file that it names is made or replaced. What is neither a file
// nor a directory (a FIFO, a terminal, /dev/null), or is open already (/dev/stdout, /dev/fd/3), is
// written straight, since it cannot be replaced.
//
// Owned and used by one thread. A writer of its own, such as the plug-in, may open Path() and
// truncate it, and must have closed it before Commit.
class OutputFile {
 public:
  // Creates the temporary file, with the permissions of a file already there. Throws OutputError
  // when that cannot be, also when the file there may not be written, is to be kept, or is being
  // written by a program that locks it, as every host of the plug-in does.
  OutputFile(const std::string& path, Existing existing);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Where the bytes go until Commit: the temporary file, or the user's path where it is written
  // straight.
  const std::string& Path() const { return path_; }
  bool IsStraight() const { return straight_; }
  // Whether the bytes go where this process prints.
  bool IsStandardOutput() const;
  // Appends. Throws OutputError.
  void Write(std::string_view bytes);
  // Brings the bytes to the disk and puts the file under its name. Throws OutputError; the
  // temporary file is then removed by the destructor. To be called once.
  void Commit();

 private:
  void CheckFileThere();
  void CreateTemporary();
  void OpenStraight();
  void PutInPlace();

  // As the user wrote it, for messages.
  std::string name_;
  // What the name leads to.
  std::string target_;
  std::string path_;
  Existing existing_;
  Descriptor file_;
  // The file already there, locked while this lives.
  Descriptor replaced_;
  // True when the target cannot be replaced and is written under its own name.
  bool straight_ = false;
  // While there is a temporary file.
  std::optional<DeferredEnd> temporary_;
};
