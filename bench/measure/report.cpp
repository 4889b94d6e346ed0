#include "bench/measure/report.h"

#include <array>
#include <cstdio>

void report(const std::string& measure, const std::string& subject, double value,
            const std::string& detail) {
  std::printf("{\"measure\": \"%s\", \"subject\": \"%s\", \"value\": %.6g, \"detail\": \"%s\"}\n",
              measure.c_str(), subject.c_str(), value, detail.c_str());
  std::fflush(stdout);
}

void report(const std::string& measure, const std::string& subject, const Comparison& comparison,
            const std::string& subjectName, const std::string& yardstickName) {
  constexpr double kMilliseconds = 1e3;
  std::array<char, 256> detail;
  std::snprintf(detail.data(), detail.size(), "%s %.4g ms, %s %.4g ms", subjectName.c_str(),
                comparison.subject * kMilliseconds, yardstickName.c_str(),
                comparison.yardstick * kMilliseconds);
  report(measure, subject, comparison.ratio, detail.data());
}
