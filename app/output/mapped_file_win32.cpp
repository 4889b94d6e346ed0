#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>

#include "app/cli/translation.h"
#include "app/output/mapped_file.h"
#include "app/output/output_failures.h"
#include "platform/input_file.h"

namespace dxf2d {

// Read, since Windows neither removes nor replaces a file that is mapped.
MappedFile::MappedFile(const std::string& path, const std::string& name) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(openForReading(path), &std::fclose);
  const auto fail = [&] {
    throw OutputError(kExitWriteFailed,
                      {name, tr("cannot be read back: %1", {reasonOf(errno)}), checkDisk()});
  };
  if (file == nullptr || _fseeki64(file.get(), 0, SEEK_END) != 0) {
    fail();
  }
  const auto size = static_cast<std::size_t>(_ftelli64(file.get()));
  _fseeki64(file.get(), 0, SEEK_SET);
  auto bytes = std::make_unique_for_overwrite<char[]>(size);
  if (std::fread(bytes.get(), 1, size, file.get()) != size) {
    fail();
  }
  bytes_ = {bytes.release(), size};
}

MappedFile::~MappedFile() { delete[] bytes_.data(); }

}  // namespace dxf2d
