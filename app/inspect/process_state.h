// What of a process a plug-in must leave as it finds it.
#pragma once

#include <string>
#include <vector>

#include "app/process/descriptor.h"

namespace dxf2d {

// What belongs to the whole process, at one moment.
class ProcessState {
 public:
  // What the process's threads are counted by; to be made before it is confined.
  class ThreadCounter {
   public:
    ThreadCounter();
    // 0 where the system does not tell.
    std::size_t Count() const;

   private:
    Descriptor file_;
  };

  explicit ProcessState(const ThreadCounter& threads);

  // What has become different in `later`, as "leaves a file open (/var/log/export.log)"; empty for
  // nothing.
  std::string ChangeIn(const ProcessState& later) const;
  // The same of what a plug-in may not even change in its entry: it may open files there, and start
  // threads.
  std::string SettingChangedIn(const ProcessState& later) const;

 private:
  std::vector<int> descriptors_;
  std::size_t threads_ = 0;
  std::string locale_;
  void* threadLocale_ = nullptr;
  std::vector<std::string> environment_;
  std::string directory_;
};

}  // namespace dxf2d
