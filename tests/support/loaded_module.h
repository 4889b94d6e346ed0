// A library that is loaded at run time.
#pragma once

#include <string>

// Loads the library at `path`, with nothing of it visible to others, and unloads it in the end. A
// failure is one of the test.
class LoadedModule {
 public:
  explicit LoadedModule(const std::string& path);
  ~LoadedModule();
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  // The function of that name in the library's table of exports.
  template <class Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(Address(name));
  }

 private:
  void* Address(const char* name) const;

  void* handle_;
};
