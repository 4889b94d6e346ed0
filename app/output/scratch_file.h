// A temporary file without a name.
#pragma once

#include <string>

#include "app/output/output_directory.h"
#include "app/output/temporary_directory.h"
#include "app/output/work_file.h"

namespace dxf2d {

// Lies in the directory for temporary files, for its owner alone, and goes with this object. `name`
// stands for it in messages. Throws OutputError. Termination signals are blocked as long as it
// lives (see WorkFile).
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& name)
      : directory_((temporaryDirectory() / "").string()),
        file_(directory_, (temporaryDirectory() / "").string(), name) {}

  int Number() const { return file_.Number(); }
  // By which this process and its children can open it.
  const std::string& Path() const { return file_.Path(); }

 private:
  OutputDirectory directory_;
  WorkFile file_;
};

}  // namespace dxf2d
