// A directory for one test, removed with all in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

class ScratchDirectory {
 public:
  ScratchDirectory() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("dxf2d-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

  std::size_t FileCount() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_), {}));
  }

  static void Fill(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }

  static std::string ContentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::filesystem::path path_;
};
