#include "app/batch/job_queue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <set>

namespace dxf2d::batch {

namespace {

// Jobs that note which run at the same time.
class Jobs {
 public:
  // Waits until `expected` jobs run, so that as many have to.
  bool Run(std::size_t job, std::size_t expected) {
    std::unique_lock lock(mutex_);
    begun_.push_back(job);
    ++running_;
    most_ = std::max(most_, running_);
    changed_.notify_all();
    changed_.wait(lock, [&] { return most_ >= expected; });
    --running_;
    return true;
  }
  std::size_t Most() const { return most_; }
  const std::vector<std::size_t>& Begun() const { return begun_; }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::size_t> begun_;
  std::size_t running_ = 0;
  std::size_t most_ = 0;
};

TEST(RunJobs, EachJobRunsOnce) {
  Jobs jobs;
  runJobs(std::vector<std::uint64_t>(100, 1), {4, 0},
          [&](std::size_t job) { return jobs.Run(job, 1); });
  const std::multiset<std::size_t> begun(jobs.Begun().begin(), jobs.Begun().end());
  EXPECT_EQ(begun.size(), 100U);
  EXPECT_EQ(std::set<std::size_t>(begun.begin(), begun.end()).size(), 100U);
}

TEST(RunJobs, AsManyRunAtATimeAsAreAskedFor) {
  Jobs jobs;
  runJobs(std::vector<std::uint64_t>(9, 1), {3, 0},
          [&](std::size_t job) { return jobs.Run(job, 3); });
  EXPECT_EQ(jobs.Most(), 3U);
}

TEST(RunJobs, OneAtATimeTheyRunInOrder) {
  Jobs jobs;
  runJobs({1, 1, 1, 1}, {1, 0}, [&](std::size_t job) { return jobs.Run(job, 1); });
  EXPECT_EQ(jobs.Begun(), (std::vector<std::size_t>{0, 1, 2, 3}));
  EXPECT_EQ(jobs.Most(), 1U);
}

TEST(RunJobs, AJobWaitsUntilItsMemoryFits) {
  Jobs jobs;
  runJobs({6, 6, 6}, {3, 10}, [&](std::size_t job) { return jobs.Run(job, 1); });
  EXPECT_EQ(jobs.Most(), 1U);
}

TEST(RunJobs, JobsThatFitTogetherRunTogether) {
  Jobs jobs;
  runJobs({5, 5, 5}, {3, 10}, [&](std::size_t job) { return jobs.Run(job, 2); });
  EXPECT_EQ(jobs.Most(), 2U);
}

TEST(RunJobs, AJobThatNeverFitsRunsAlone) {
  Jobs jobs;
  runJobs({1, 100, 1}, {2, 10}, [&](std::size_t job) { return jobs.Run(job, 1); });
  EXPECT_EQ(jobs.Begun().size(), 3U);
}

TEST(RunJobs, AfterOneThatStopsNoMoreBegin) {
  std::vector<std::size_t> begun;
  runJobs({1, 1, 1, 1}, {1, 0}, [&](std::size_t job) {
    begun.push_back(job);
    return job != 1;
  });
  EXPECT_EQ(begun, (std::vector<std::size_t>{0, 1}));
}

TEST(AvailableResources, AreThere) {
  EXPECT_GE(defaultJobCount(), 1U);
  EXPECT_GT(availableMemory(), 0U);
}

}  // namespace

}  // namespace dxf2d::batch
