#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <vector>

#include "platform/parallel.h"

namespace {

std::atomic<bool> refusesThreads{false};
std::atomic<int> startedThreads{0};

}  // namespace

// In place of the C library's, which the standard library's threads call.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*start)(void*), void* argument) {
  using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
  if (refusesThreads) {
    return EAGAIN;
  }
  ++startedThreads;
  return create(thread, attributes, start, argument);
}

namespace dxf2d {
namespace {

TEST(RunInParallel, OneThreadStartsNoOther) {
  startedThreads = 0;
  runInParallel(10, 1, [](std::size_t) {});
  EXPECT_EQ(startedThreads, 0);
  runInParallel(10, 3, [](std::size_t) {});
  EXPECT_EQ(startedThreads, 2);
}

TEST(RunInParallel, FewerThreadsDoTheWorkWhereOthersCannotBeStarted) {
  refusesThreads = true;
  std::vector<int> calls(100);
  runInParallel(calls.size(), 4, [&](std::size_t number) { ++calls[number]; });
  refusesThreads = false;
  EXPECT_EQ(calls, std::vector<int>(100, 1));
}

}  // namespace
}  // namespace dxf2d
