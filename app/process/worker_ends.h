// What the ends of worker processes mean.
#pragma once

#include <string>

namespace dxf2d {

// Of the number of WorkerResult::How::kSignal: what the system calls it.
std::string crashName(int number);
// Whether somebody else ended the worker. Readers do not send such signals to themselves.
bool isSentFromOutside(int number);
// Whether it used up its processor time.
bool isEndOfProcessorTime(int number);

// Whether the error that kept a worker from starting (WorkerResult::How::kNotStarted) is that the
// program is not there or not one that can run. All others are those of a system that has too
// little of something.
bool isProgramAbsent(int error);

}  // namespace dxf2d
