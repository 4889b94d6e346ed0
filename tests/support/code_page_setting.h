// The code page of one test.
#pragma once

#include <gtest/gtest.h>

#include "platform/code_page.h"

// Sets the thread's code page until the end of the scope.
class CodePageSetting {
 public:
  explicit CodePageSetting(unsigned page) : before_(GetThreadCodePage()) {
    EXPECT_TRUE(SetThreadCodePage(page));
  }
  ~CodePageSetting() { SetThreadCodePage(before_); }
  CodePageSetting(const CodePageSetting&) = delete;
  CodePageSetting& operator=(const CodePageSetting&) = delete;

 private:
  unsigned before_;
};
