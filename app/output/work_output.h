// The file that an output is made in, as a worker process has it.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dxf2d {

// The worker has inherited the open file, or opens it by its path on Windows; its parent holds the
// OutputFile and names the file when it is complete.
struct WorkOutput {
  // -1 on Windows.
  int file = -1;
  // Where a writer of its own, such as the plug-in, may open the file.
  std::string path;
  // How messages name the output.
  std::string name;
  // What the user can do when it cannot be written.
  // In English; its process translates it.
  std::string remedy;

  // Appends. Throws OutputError.
  void Write(std::string_view bytes) const;
  // Takes out what a writer of its own has put into the file; nothing was written here before.
  // Throws OutputError.
  void Clear() const;
  // `text` with the user's name for the output in place of `path`.
  std::string AsUserNamesIt(std::string text) const;

  // For the command line of a worker, and back.
  static constexpr std::size_t kWords = 4;
  std::vector<std::string> Words() const;
  static WorkOutput Of(std::span<const std::string> words);
};

}  // namespace dxf2d
