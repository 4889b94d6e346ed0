// Where a command works on its output, and where the output ends.
#pragma once

#include <optional>
#include <string>

#include "app/output_file.h"

// The plug-in opens, truncates and locks the file that it writes, which is no way to treat standard
// output, a FIFO or a device: for those the output is made in a temporary file and copied when it
// is whole.
class Destination {
 public:
  // The path that `path`, as the user gives it, stands for: "-" is standard output.
  static std::string PathOf(const std::string& path) { return path == "-" ? "/dev/stdout" : path; }

  // `path` as the user gives it. Throws OutputError.
  Destination(const std::string& path, Existing existing);

  // The file to make the output in. It goes with this object unless it is delivered.
  OutputFile& Work() { return *work_; }
  const std::string& WorkPath() const { return work_->Path(); }
  // Brings the whole output to its place. Throws OutputError. To be called once, after which there
  // is no Work.
  void Deliver();
  // How messages name it, and whether this process prints there too.
  const std::string& Name() const { return path_; }
  bool IsStandardOutput() const { return straight_ && straight_->IsStandardOutput(); }
  // What can be done when the work file cannot be written, as the end of a sentence.
  std::string WayOut() const;
  // `text` with the user's name for the output in place of the work file's.
  std::string AsUserNamesIt(std::string text) const;

 private:
  std::string path_;
  // The user's file when it cannot be replaced and so must be copied into.
  std::optional<OutputFile> straight_;
  // A temporary of the user's file, or the file that is copied.
  std::optional<OutputFile> work_;
};
