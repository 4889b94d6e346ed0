#include "app/drawing/file_text.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/drawing/group_reader.h"
#include "platform/input_file.h"

namespace dxf2d {

namespace {

// Bytes. A device can be named as a drawing and never end.
constexpr std::size_t kMaxFileSize = std::size_t{512} << 20;

// Bytes; sizes double from here.
constexpr std::size_t kFirstChunk = std::size_t{1} << 20;

[[noreturn]] void failReading(const std::string& path, int error) {
  throw DxfError({path, tr("cannot be read: %1", {std::generic_category().message(error)}),
                  tr("check the name and its permissions")});
}

// Room for all of a file and a byte more, by which its end is seen; for what has no size known
// beforehand, room to begin with.
std::size_t firstRoom(const std::string& path) {
  std::error_code none;
  const std::uintmax_t size = std::filesystem::file_size(filePath(path), none);
  if (none) {
    return kFirstChunk;
  }
  return std::max(static_cast<std::size_t>(std::min(size, std::uintmax_t{kMaxFileSize})) + 1,
                  kFirstChunk);
}

}  // namespace

FileText readWhole(const std::string& path) {
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  errno = 0;
  const std::unique_ptr<std::FILE, CloseFile> file(openForReading(path));
  if (file == nullptr) {
    failReading(path, errno);
  }
  FileText text;
  std::size_t room = 0;
  do {
    if (text.size > kMaxFileSize) {
      throw LimitError(path, tr("is longer than %1 bytes", {std::to_string(kMaxFileSize)}));
    }
    // One byte more than is taken tells a file of the greatest size from a longer one.
    room = room == 0 ? firstRoom(path) : std::min(2 * room, kMaxFileSize + 1);
    auto bytes = std::make_unique_for_overwrite<char[]>(room);
    std::copy_n(text.bytes.get(), text.size, bytes.get());
    text.bytes = std::move(bytes);
    text.size += std::fread(text.bytes.get() + text.size, 1, room - text.size, file.get());
    if (std::ferror(file.get()) != 0) {
      failReading(path, errno);
    }
  } while (text.size == room);
  return text;
}

}  // namespace dxf2d
