// Archives and compressed files, by libarchive.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace dxf2d::unpack {

// A file that cannot be unpacked; what() is a reason without a period.
class UnpackError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A file in an archive, or the only one of a compressed file.
struct Member {
  // With the folders in the archive, between slashes.
  std::string path;
  bool isRegular = false;
  bool isEncrypted = false;
};

// The members of the archive at `path`: tar, Zip or 7-Zip, or compressed with gzip, bzip2, xz
// or zstd; or the one file that such a program has compressed. Throws UnpackError.
std::vector<Member> membersOf(const std::string& path);

// Writes the regular members of the archive's folder `folder` into the directory `directory`, which
// is empty; what is in folders below is left out. Throws UnpackError.
void unpackFolder(const std::string& path, const std::string& folder, const std::string& directory);

// The folder of a member, without a slash at its end; empty for the archive's own.
std::string folderOf(const std::string& member);
// The name of a member without its folders.
std::string nameOf(const std::string& member);

}  // namespace dxf2d::unpack
