// Where a command builds its output, and where the output goes.
#pragma once

#include <optional>
#include <string>

#include "app/output/output_file.h"
#include "app/output/work_output.h"
#include "app/process/file_identity.h"
#include "app/process/input_task.h"

namespace dxf2d {

// Throws OutputError unless outputs can be put into `directory`.
void requireDirectory(const std::string& directory);

// The plug-in opens, truncates and locks the file that it writes, which must not
// happen to standard output, a FIFO or a device: their output is built in a temporary file and
// copied when it is complete.
class Destination {
 public:
  // The path that `path`, as the user gives it, stands for: "-" is standard output.
  static std::string PathOf(const std::string& path) { return path == "-" ? "/dev/stdout" : path; }

  // Which file that is; none when there is none yet.
  static std::optional<FileIdentity> IdentityOf(const std::string& path) {
    return identityOf(PathOf(path));
  }
  // Whether it would replace the file `input`, whatever names lead there.
  static bool IsFile(const std::string& path, const std::string& input) {
    const std::optional<FileIdentity> file = IdentityOf(path);
    return file && identityOf(input) == file;
  }

  // The end of the file's name, such as ".png", by which the user says what to write. Empty for
  // names without an end, and for what is there and no regular file.
  static std::string EndOf(const std::string& path);

  // `path` as the user gives it. Throws OutputError.
  Destination(const std::string& path, Existing existing);

  // The file to make the output in. It goes with this object unless it is delivered.
  WorkOutput Work() const;
  // Brings the whole output to its place. Throws OutputError. To be called once; Work may
  // not be called afterwards.
  void Deliver();
  // How messages name it, and whether this process prints there too.
  const std::string& Name() const { return path_; }
  bool IsStandardOutput() const { return inPlace_ && inPlace_->IsStandardOutput(); }

 private:
  std::string path_;
  // The user's file when it cannot be replaced and so must be copied into.
  std::optional<OutputFile> inPlace_;
  // A temporary of the user's file, or the file that is copied.
  std::optional<OutputFile> work_;
};

// Runs a task's call, whose words already are those before the output's, and delivers what its
// worker makes in the destination's work file. `options` follow. Says what was done, if asked.
// Returns an exit code, with a message printed unless that is kExitDone. Throws OutputError.
int deliverFrom(const InputTask& work, WorkerCall call, const std::vector<std::string>& options,
                Destination& destination, const Verbosity& verbosity = {});

}  // namespace dxf2d
