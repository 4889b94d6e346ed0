// A folder for files that are written by CFile.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "platform/cfile.h"
#include "platform/path_text.h"

namespace fs = std::filesystem;

inline constexpr unsigned kCreate = CFile::modeCreate | CFile::modeWrite;

class CFileTest : public testing::Test {
 protected:
  CFileTest() {
    std::random_device random;
    folder_ = fs::temp_directory_path() / ("cfile-" + std::to_string(random()));
    fs::create_directory(folder_);
  }
  ~CFileTest() override { fs::remove_all(folder_); }

  std::u16string Name(const std::string& name) const {
    return pathFromBytes((folder_ / name).string());
  }
  std::string Content(const std::string& name) const {
    std::ifstream in(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void Put(const std::string& name, const std::string& content) const {
    std::ofstream(folder_ / name, std::ios::binary) << content;
  }

  fs::path folder_;
};

inline void write(CFile& file, const std::string& text) { file.Write(text.data(), text.size()); }

template <typename Call>
CFileException thrownBy(Call call) {
  try {
    call();
  } catch (const CFileException& exception) {
    return exception;
  }
  return CFileException();
}

inline CFileException::Cause causeOfOpen(const std::u16string& path, unsigned flags = kCreate) {
  CFile file;
  CFileException exception;
  EXPECT_FALSE(file.Open(path.c_str(), flags, &exception));
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(exception.m_strFileName, CString(path));
  return exception.m_cause;
}
