// The directory of an output file, held open: names in it stay names in it, whatever others do to
// the path that led there.
#pragma once

#include <string>

#include "app/process/descriptor.h"

namespace dxf2d {

class OutputDirectory {
 public:
  OutputDirectory() = default;
  // The directory of `target`. Not open, with errno set, when it cannot be opened.
  explicit OutputDirectory(const std::string& target);

  bool IsOpen() const { return directory_.IsOpen(); }
  int Number() const { return directory_.Number(); }
  // Whether the directory of `target` is still this one.
  bool IsDirectoryOf(const std::string& target) const;
  // Whether names can be added here and not removed.
  bool IsAppendOnly() const;
  // Whether users other than this one and root may rename files here.
  bool IsSharedWithOthers() const;
  // Whether `name` is here and refers to the open file `file`; links are not followed.
  bool Contains(const std::string& name, int file) const;
  // Whether `name` is here and refers to another file.
  bool HasAnother(const std::string& name, int file) const;
  // A new name survives a crash only once its directory is synced. Returns 0, or an errno; 0 where
  // the directory cannot be read or needs no syncing.
  int Sync() const;

 private:
  enum class Comparison { kSame, kDifferent, kUnknown };
  Comparison Compare(const std::string& name, int file) const;

  Descriptor directory_;
  // False when names can be used, but not read.
  bool isReadable_ = true;
};

}  // namespace dxf2d
