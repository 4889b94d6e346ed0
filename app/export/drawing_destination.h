// Where the plug-in writes a drawing, and where the drawing ends.
#pragma once

#include <optional>
#include <string>

#include "app/output_file.h"

// The plug-in opens, truncates and locks the file that it writes, which is no way to treat standard
// output, a FIFO or a device: for those the drawing is made in a temporary file and copied when it
// is whole.
class DrawingDestination {
 public:
  // `path` as the user gives it, "-" for standard output. Throws OutputError.
  explicit DrawingDestination(const std::string& path);

  // The file to write the drawing into. It goes with this object unless it is delivered.
  const std::string& WorkPath() const { return work_->Path(); }
  // Brings the whole drawing to its place. Throws OutputError. To be called once.
  void Deliver();
  // `text` with the user's name for the drawing in place of the work file's.
  std::string AsUserNamesIt(std::string text) const;

 private:
  std::string path_;
  // The user's file when it cannot be replaced and so must be copied into.
  std::optional<OutputFile> straight_;
  // The file that the plug-in writes: a temporary of the user's file, or one that is copied.
  std::optional<OutputFile> work_;
};
