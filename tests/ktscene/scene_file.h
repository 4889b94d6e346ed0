// A scene file of one test, and why it is refused.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "ktscene/kt_scene_reader.h"

// A file of this test's own, removed at the end.
class TemporaryFile {
 public:
  TemporaryFile(const std::string& name, const std::string& content)
      : path_(testing::TempDir() + name) {
    std::ofstream(path_, std::ios::binary) << content;
  }
  ~TemporaryFile() { std::remove(path_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

// The sentence with which the file at `path` is refused; empty when it is read.
inline std::string refusal(const std::string& path) {
  try {
    ReadSceneFile(path);
    return {};
  } catch (const KtSceneError& error) {
    return error.what();
  }
}
