// Runs a test's work on a thread with little stack.
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

// 256 KiB, the least that a host is known to give a worker thread. `Work` is a captureless
// callable.
template <typename Work>
void runOnSmallStack(Work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  pthread_t thread;
  const auto run = [](void*) -> void* {
    Work{}();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, nullptr), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}
