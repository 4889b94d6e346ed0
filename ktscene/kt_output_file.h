// Output files that are complete under the user's name, or not there at all.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "ktscene/export.h"

// An output under construction. The bytes go to a file beside the user's, and Commit puts it under
// the user's name in one step, once they are on the disk; without Commit the destructor removes it,
// and what stood under the name before is untouched. A symbolic link is followed, so that the file
// to which it leads is made or replaced; a new file of the same name keeps the rights of the old.
// What is neither a file nor a directory, such as a FIFO, a terminal or /dev/stdout, is written in
// place, since it cannot be replaced. Used by one thread.
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

  // Where the bytes go, for a writer of its own such as a plug-in, which has closed the file before
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
