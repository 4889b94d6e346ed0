// The file that an output is made in before it gets its name.
#pragma once

#include <string>

#include "app/output/output_directory.h"
#include "app/process/descriptor.h"
#include "app/process/termination_signals.h"

namespace dxf2d {

// A file that its owner alone may use and that has no name, since nobody can then remove or replace
// it: in the output's directory where the system has such files there, else in the directory for
// temporary files, from which it is copied when it is complete. Without /proc, by which other
// programs open such files, it has a temporary name in the output's directory. It goes with this
// object unless it is published. Termination signals are blocked until then (see
// ScopedSignalBlock).
class WorkFile {
 public:
  // `target` is a path in `directory`, which must outlive this object, and `name` the user's name
  // for it in messages. Throws OutputError.
  WorkFile(const OutputDirectory& directory, const std::string& target, const std::string& name);
  ~WorkFile();
  WorkFile(const WorkFile&) = delete;
  WorkFile& operator=(const WorkFile&) = delete;

  int Number() const { return file_.Number(); }
  // A path by which this process and its children can open the file: that of the descriptor, which
  // leads to the file whatever happens to names.
  const std::string& Path() const { return path_; }
  // Brings the bytes, which are complete, into the output's directory if they are elsewhere; Number
  // and Path may change. Returns 0, or an errno.
  int Settle();
  // Gives the file the name `fileName` in the directory, in place of a file of that name if
  // `replaces` is true. Returns 0, or an errno: EEXIST when there is such a file, ESTALE (on
  // Windows ENOENT) when the temporary file was removed or replaced.
  int Publish(const std::string& fileName, bool replaces);

 private:
  bool CreateUnnamed();
  int CreateNamed();
  void MoveElsewhere();
  void CheckPath(const std::string& target, const std::string& name);
  void Discard();
  int LinkAs(const std::string& name) const;
  int GiveTemporaryName();

  const OutputDirectory& directory_;
  ScopedSignalBlock deferred_;
  Descriptor file_;
  std::string path_;
  // While the file has one.
  std::string temporaryName_;
  bool isElsewhere_ = false;
};

}  // namespace dxf2d
