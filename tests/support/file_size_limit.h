// A disk that is nearly full.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdint>

// Limits the files of this process to `size` bytes until the end of the scope.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(std::uintmax_t size) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{size, before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
};
