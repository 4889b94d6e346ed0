// Times in memory that nothing was done in before.
#pragma once

#include <functional>

// What `measure()` returns in a child of this process, which ends with it. The memory that a
// repetition leaves behind is otherwise the next one's, ready to use; an export finds none such,
// and getting it from the kernel is a good part of its time. Throws std::runtime_error when the
// child fails.
double inFreshProcess(const std::function<double()>& measure);
