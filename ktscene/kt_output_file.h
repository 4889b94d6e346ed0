// Output files that appear under the user's name either complete or not at all.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "ktscene/export.h"

// An output under construction. The bytes go to a file in the same directory, to which Commit gives
// the user's name in one step once they are on disk; without Commit, the destructor removes it, and
// an earlier file of that name is untouched. A symbolic link is followed, so its target is created
// or replaced; a file that replaces another keeps the rights of the old one. Anything that is
// neither a file nor a directory, such as a FIFO, a terminal or /dev/stdout, is written in place,
// since it cannot be replaced. For use by one thread.
//
//   KtOutputFile output("house.dxf");
//   if (traverser.Walk(scene, pathFromBytes(output.Path()))) {
//     output.Commit();
//   }
class KT_SCENE_API KtOutputFile {
 public:
  // `path` in the operating system's bytes. Throws std::system_error, whose what() names the file
  // and the reason, when no file can be made there.
  explicit KtOutputFile(const std::string& path);
  ~KtOutputFile();
  KtOutputFile(const KtOutputFile&) = delete;
  KtOutputFile& operator=(const KtOutputFile&) = delete;

  // Where the bytes go, for a separate writer such as a plug-in, which must close the file before
  // Commit.
  const std::string& Path() const;
  // Appends. Throws std::system_error.
  void Write(std::string_view bytes);
  // To be called once. Throws std::system_error.
  void Commit();

 private:
  struct State;
  std::unique_ptr<State> state_;
};
