#include "app/model/opened_file.h"

#include <io.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "app/cli/file_path.h"
#include "platform/input_file.h"
#include "platform/windows_api.h"

namespace dxf2d {

OpenedFile::OpenedFile(const std::string& path) {
  if (!Find(path, kind_)) {
    errno = ENOENT;
    return;
  }
  stream_ = openForReading(path);
  if (stream_ != nullptr) {
    Read(stream_, state_);
  }
}

OpenedFile::~OpenedFile() {
  if (stream_ != nullptr) {
    std::fclose(stream_);
  }
}

OpenedFile::OpenedFile(OpenedFile&& other) noexcept
    : stream_(std::exchange(other.stream_, nullptr)), kind_(other.kind_), state_(other.state_) {}

bool OpenedFile::Find(const std::string& path, Kind& kind) {
  std::error_code none;
  const std::filesystem::file_status status = std::filesystem::status(filePath(path), none);
  kind = std::filesystem::is_regular_file(status) ? Kind::kRegular
         : std::filesystem::is_directory(status)  ? Kind::kDirectory
                                                  : Kind::kOther;
  return std::filesystem::exists(status);
}

bool OpenedFile::Read(std::FILE* stream, State& state) {
  BY_HANDLE_FILE_INFORMATION now{};
  const auto file = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
  const bool isKnown = GetFileInformationByHandle(file, &now) != 0;
  state = {std::uint64_t{now.nFileSizeHigh} << 32U | now.nFileSizeLow,
           now.ftLastWriteTime.dwHighDateTime, now.ftLastWriteTime.dwLowDateTime};
  return isKnown;
}

bool OpenedFile::HasChanged() const {
  State now;
  return Read(stream_, now) && now != state_;
}

bool OpenedFile::Seek(std::uint64_t offset, int whence) const {
  return _fseeki64(stream_, static_cast<std::int64_t>(offset), whence) == 0;
}

std::uint64_t OpenedFile::Tell() const { return static_cast<std::uint64_t>(_ftelli64(stream_)); }

}  // namespace dxf2d
