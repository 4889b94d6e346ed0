// Times that can be compared: both sides in one run, in turn.
#pragma once

#include <chrono>
#include <vector>

// The seconds that `work()` takes.
template <class Work>
double secondsOf(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The middle value; of an even number the mean of the middle two. Not of an empty list.
double medianOf(std::vector<double> values);

struct Comparison {
  // Medians, in seconds.
  double subject = 0.0;
  double yardstick = 0.0;
  // The median of the ratios of times taken one after the other, which what else the machine does
  // moves less than the ratio of the medians.
  double ratio = 0.0;
};

Comparison compare(const std::vector<double>& subject, const std::vector<double>& yardstick);

// Calls both in turn `repetitions` times after one round that does not count. Each returns the
// seconds of what is measured, so that setting up stays outside.
template <class Subject, class Yardstick>
Comparison compareInTurn(int repetitions, Subject subject, Yardstick yardstick) {
  std::vector<double> subjectTimes;
  std::vector<double> yardstickTimes;
  subject();
  yardstick();
  for (int i = 0; i < repetitions; ++i) {
    subjectTimes.push_back(subject());
    yardstickTimes.push_back(yardstick());
  }
  return compare(subjectTimes, yardstickTimes);
}
