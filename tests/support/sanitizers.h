// What cannot be tested with sanitizers, which take memory, stack and descriptors for themselves.
#pragma once

#include <gtest/gtest.h>

#if defined(DXF2D_SANITIZED)
#define DXF2D_SKIP_IF_SANITIZED(reason) GTEST_SKIP() << (reason)
#else
#define DXF2D_SKIP_IF_SANITIZED(reason) static_cast<void>(0)
#endif

// Each skips the test that it stands in, where its means are not to be had.
#define NEEDS_MEMORY_LIMITS() \
  DXF2D_SKIP_IF_SANITIZED("the address sanitizer ends a process that asks for too much memory")
#define NEEDS_STACK_LIMITS() \
  DXF2D_SKIP_IF_SANITIZED("the address sanitizer takes the stack's size from the program's start")
#define NEEDS_SILENCE() \
  DXF2D_SKIP_IF_SANITIZED("workers keep standard error, for the sanitizers' reports")
#define NEEDS_DESCRIPTOR_LIMITS() \
  DXF2D_SKIP_IF_SANITIZED("the sanitizers need a descriptor to tell what memory is there")
