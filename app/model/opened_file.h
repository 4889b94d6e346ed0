// A file that is open for reading, and what it was when it was opened.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace dxf2d {

class OpenedFile {
 public:
  enum class Kind { kRegular, kDirectory, kOther };

  // Null, with errno set, in Stream() when it cannot be opened. A FIFO is not waited for.
  explicit OpenedFile(const std::string& path);
  ~OpenedFile();
  OpenedFile(OpenedFile&& other) noexcept;
  OpenedFile& operator=(OpenedFile&& other) = delete;

  // What the file at `path` is; links are followed. False where there is none.
  static bool Find(const std::string& path, Kind& kind);

  // Of a directory null.
  std::FILE* Stream() const { return stream_; }
  Kind What() const { return kind_; }
  std::uint64_t Size() const { return state_.size; }
  // Whether it has another size or was written to since.
  bool HasChanged() const;
  bool Seek(std::uint64_t offset, int whence) const;
  std::uint64_t Tell() const;

 private:
  struct State {
    std::uint64_t size = 0;
    // Of the last change; in the units of the system.
    std::int64_t seconds = 0;
    std::int64_t parts = 0;

    bool operator==(const State&) const = default;
  };

  static bool Read(std::FILE* stream, State& state);

  std::FILE* stream_ = nullptr;
  Kind kind_ = Kind::kOther;
  State state_;
};

}  // namespace dxf2d
