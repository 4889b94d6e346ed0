#include "importers/unpack/archive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace dxf2d::unpack {
namespace {

// A file that unpacks to more is not a model, but an attack; nor is one of so many members. Binary
// glTF, as the largest models are handed on, can hold as much.
constexpr std::uint64_t kMostBytes = std::uint64_t{4} << 30;
constexpr std::size_t kMostMembers = 100000;

struct CloseArchive {
  void operator()(archive* file) const { archive_read_free(file); }
};
using Archive = std::unique_ptr<archive, CloseArchive>;

[[noreturn]] void failAsItSays(archive* file) {
  const char* const reason = archive_error_string(file);
  throw UnpackError(reason == nullptr ? "it is damaged" : reason);
}

Archive openArchive(const std::string& path) {
  Archive file(archive_read_new());
  if (!file) {
    throw std::bad_alloc();
  }
  // Those that are part of the library: it would start programs for the others.
  archive_read_support_filter_gzip(file.get());
  archive_read_support_filter_bzip2(file.get());
  archive_read_support_filter_xz(file.get());
  archive_read_support_filter_lzma(file.get());
  archive_read_support_filter_zstd(file.get());
  archive_read_support_format_tar(file.get());
  archive_read_support_format_zip(file.get());
  archive_read_support_format_7zip(file.get());
  archive_read_support_format_raw(file.get());
  constexpr std::size_t kBlock = std::size_t{1} << 20;
  if (archive_read_open_filename(file.get(), path.c_str(), kBlock) != ARCHIVE_OK) {
    failAsItSays(file.get());
  }
  return file;
}

// The name of the file in a compressed single file, such as "a.obj.gz" or "a.stpz".
std::string unpackedName(const std::string& path) {
  const std::filesystem::path name = std::filesystem::path(path).filename();
  const std::string end = name.extension().string();
  for (const std::string_view packer : {".gz", ".bz2", ".xz", ".lzma", ".zst"}) {
    if (strcasecmp(end.c_str(), packer.data()) == 0) {
      return name.stem().string();
    }
  }
  const bool hasPackedEnd = end.size() > 2 && (end.back() == 'z' || end.back() == 'Z');
  return hasPackedEnd ? name.string().substr(0, name.string().size() - 1) : name.string();
}

bool isRaw(archive* file) { return archive_format(file) == ARCHIVE_FORMAT_RAW; }

Member memberOf(archive* file, archive_entry* entry, const std::string& path) {
  if (isRaw(file)) {
    return {unpackedName(path), true, false};
  }
  const char* name = archive_entry_pathname_utf8(entry);
  if (name == nullptr) {
    name = archive_entry_pathname(entry);
  }
  const bool isLink = archive_entry_hardlink(entry) != nullptr;
  return {name == nullptr ? "" : name, archive_entry_filetype(entry) == AE_IFREG && !isLink,
          archive_entry_is_encrypted(entry) != 0};
}

// Calls `visit` with each member and the archive, which then stands at the member's bytes.
template <typename Visit>
void forEachMember(const std::string& path, Visit visit) {
  const Archive file = openArchive(path);
  archive_entry* entry = nullptr;
  int code = ARCHIVE_OK;
  std::size_t count = 0;
  while ((code = archive_read_next_header(file.get(), &entry)) == ARCHIVE_OK ||
         code == ARCHIVE_WARN) {
    if (isRaw(file.get()) && archive_filter_code(file.get(), 0) == ARCHIVE_FILTER_NONE) {
      throw UnpackError("it is not a packed file of a kind that is known");
    }
    if (++count > kMostMembers) {
      throw UnpackError("it holds more than " + std::to_string(kMostMembers) + " files");
    }
    visit(memberOf(file.get(), entry, path), file.get());
    if (isRaw(file.get())) {
      return;
    }
  }
  if (code != ARCHIVE_EOF) {
    failAsItSays(file.get());
  }
}

// A new file, which is closed at the end of this object's life.
class NewFile {
 public:
  explicit NewFile(const std::string& path)
      : number_(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600)) {
    if (number_ < 0) {
      throw UnpackError(errno == EEXIST ? "it holds two files of one name"
                                        : std::string("it cannot be unpacked: ") + strerror(errno));
    }
  }
  ~NewFile() { close(number_); }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void Write(const char* bytes, std::size_t size) const {
    while (size != 0) {
      const ssize_t written = write(number_, bytes, size);
      if (written < 0 && errno == EINTR) {
        continue;
      }
      if (written < 0) {
        throw UnpackError(std::string("there is no room to unpack it: ") + strerror(errno));
      }
      bytes += written;
      size -= static_cast<std::size_t>(written);
    }
  }

 private:
  int number_;
};

// Writes the bytes at which `file` stands; `left` is how many there may be, and is lowered.
void unpackMember(archive* file, const std::string& path, std::uint64_t& left) {
  const NewFile out(path);
  std::vector<char> bytes(std::size_t{1} << 20);
  la_ssize_t size = 0;
  while ((size = archive_read_data(file, bytes.data(), bytes.size())) > 0) {
    const auto count = static_cast<std::size_t>(size);
    if (count > left) {
      throw UnpackError("it unpacks to more than 4 GiB");
    }
    left -= count;
    out.Write(bytes.data(), count);
  }
  if (size < 0) {
    failAsItSays(file);
  }
}

}  // namespace

std::vector<Member> membersOf(const std::string& path) {
  std::vector<Member> members;
  forEachMember(path, [&](Member member, archive*) { members.push_back(std::move(member)); });
  return members;
}

void unpackFolder(const std::string& path, const std::string& folder,
                  const std::string& directory) {
  std::uint64_t left = kMostBytes;
  forEachMember(path, [&](const Member& member, archive* file) {
    const std::string name = nameOf(member.path);
    if (!member.isRegular || folderOf(member.path) != folder || name.empty() || name == "." ||
        name == "..") {
      return;
    }
    if (member.isEncrypted) {
      throw UnpackError("its '" + name + "' is encrypted");
    }
    unpackMember(file, directory + '/' + name, left);
  });
}

std::string folderOf(const std::string& member) {
  const std::size_t slash = member.rfind('/');
  return slash == std::string::npos ? std::string() : member.substr(0, slash);
}

std::string nameOf(const std::string& member) { return member.substr(member.rfind('/') + 1); }

}  // namespace dxf2d::unpack
