// dxf2d-unpack: takes the one model out of an archive or a compressed file.
//
// usage: dxf2d-unpack IN DIRECTORY END...
//
// Writes the only file of IN whose name ends in one of the ENDs (".obj"), and the files beside it,
// into the directory, which is empty, and prints the model's name.
#include <algorithm>
#include <cctype>
#include <clocale>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

#include "importers/unpack/archive.h"

namespace {

using dxf2d::unpack::Member;
using dxf2d::unpack::UnpackError;

// The last line of standard error is the reason that dxf2d tells its user.
int fail(const std::string& reason) {
  std::fprintf(stderr, "%s\n", reason.c_str());
  return 1;
}

std::string lowerCase(std::string text) {
  for (char& c : text) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return text;
}

// Not what file managers put beside the files that they pack.
bool isHidden(const std::string& member) {
  return dxf2d::unpack::nameOf(member).starts_with('.') || member.starts_with("__MACOSX/");
}

// Throws UnpackError unless there is one.
std::string onlyModel(const std::vector<Member>& members, const std::vector<std::string>& ends) {
  std::vector<std::string> models;
  for (const Member& member : members) {
    const std::string end = lowerCase(std::filesystem::path(member.path).extension().string());
    if (member.isRegular && !isHidden(member.path) && std::ranges::find(ends, end) != ends.end()) {
      models.push_back(member.path);
    }
  }
  if (models.empty()) {
    throw UnpackError("it holds no model of a known format");
  }
  if (models.size() > 1) {
    throw UnpackError("it holds " + std::to_string(models.size()) + " models, such as '" +
                      models[0] + "' and '" + models[1] + "'");
  }
  return models.front();
}

int unpackModel(const std::string& input, const std::string& directory,
                const std::vector<std::string>& ends) {
  const std::string model = onlyModel(dxf2d::unpack::membersOf(input), ends);
  dxf2d::unpack::unpackFolder(input, dxf2d::unpack::folderOf(model), directory);
  std::printf("%s\n", dxf2d::unpack::nameOf(model).c_str());
  return std::fflush(stdout) == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  // libarchive converts names to the character set of the locale.
  std::setlocale(LC_ALL, "C.UTF-8");
  if (argc < 4) {
    return fail("usage: dxf2d-unpack IN DIRECTORY END...");
  }
  try {
    return unpackModel(argv[1], argv[2], {argv + 3, argv + argc});
  } catch (const std::bad_alloc&) {
    return fail("it needs more memory than there is");
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
