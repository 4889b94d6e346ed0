// The error boxes of one test.
#pragma once

#include <string>
#include <vector>

#include "ktscene/zu_message.h"

// Collects error boxes in place of showing them.
class ErrorBoxes {
 public:
  struct Box {
    void* owner;
    std::u16string title;
    std::u16string text;
    int style;
  };

  ErrorBoxes() : before_(ZuSetErrorBoxHandler(&ErrorBoxes::Collect)) { shown_.clear(); }
  ~ErrorBoxes() { ZuSetErrorBoxHandler(before_); }
  ErrorBoxes(const ErrorBoxes&) = delete;
  ErrorBoxes& operator=(const ErrorBoxes&) = delete;

  const std::vector<Box>& Shown() const { return shown_; }

 private:
  static void Collect(void* owner, const char16_t* title, const char16_t* text, int style) {
    shown_.push_back({owner, title, text, style});
  }

  inline static std::vector<Box> shown_;
  ZuErrorBoxHandler before_;
};
