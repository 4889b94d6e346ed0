// What a measure says, for bench/run to gather.
#pragma once

#include <string>

#include "bench/measure/timing.h"

// Prints one result as a line of JSON on stdout. `measure` is a key of the goals in bench/run, or
// that and a suffix for what is reported beside them; `detail` says what stands behind the number.
void report(const std::string& measure, const std::string& subject, double value,
            const std::string& detail);

// The same for a ratio of times, with both times as its detail.
void report(const std::string& measure, const std::string& subject, const Comparison& comparison,
            const std::string& subjectName, const std::string& yardstickName);
