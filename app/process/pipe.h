// An anonymous pipe.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include "app/process/descriptor.h"

namespace dxf2d {

struct Pipe {
  Descriptor reader;
  Descriptor writer;
};

// Closed on exec. Not open, with errno set, when there is none to be had.
inline Pipe openPipe() {
  int ends[2] = {-1, -1};
  static_cast<void>(pipe2(ends, O_CLOEXEC));
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

}  // namespace dxf2d
