// What a worker process and its parent tell each other: the words that a worker is started with,
// the requests for workers that are forked (see WorkerTemplate), and the records that a worker
// writes into a pipe. Both are built together, so there is no version.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dxf2d {

// How a worker confines itself before its task, as the first words of its command line.
struct WorkerSetup {
  // The pipe that it reports to.
  int report = -1;
  long parentProcess = 0;
  // In bytes beyond what is in use at its start; 0: no limit.
  std::uint64_t addressSpace = 0;
  // In seconds; 0: no limit.
  std::uint64_t processorTime = 0;
  // Descriptors that its task needs beside the standard streams and `report`. It closes all others.
  std::vector<int> descriptors;
};

// The number of words that a setup takes.
inline constexpr std::size_t kSetupWords = 5;

std::vector<std::string> wordsOf(const WorkerSetup& setup);

// Of exactly kSetupWords words; none when they are not those of a setup.
std::optional<WorkerSetup> setupOf(std::span<const std::string> words);

// The task of a template, whose words are libraries to load, and whose report is the socket that
// requests come from and answers go to.
inline constexpr const char* kForkTask = "fork";

// Set in the environment of a template alone: what it is linked with is bound at its start
// (ld.so(8)) and not again in each worker.
inline constexpr const char* kBindsAtStart = "LD_BIND_NOW";

// A request is one message: the words that a worker would be started with, each with a null
// character at its end, and with it, in this order, the descriptors of its setup: the report and
// those that its task needs.
inline constexpr std::size_t kMostRequestBytes = std::size_t{64} << 10;
inline constexpr std::size_t kMostRequestDescriptors = 16;

std::string requestOf(std::span<const std::string> words);
std::vector<std::string> wordsOfRequest(std::string_view request);

// The answer to a request: a worker's process, or an errno, negative, when there is none.
using ForkAnswer = std::int64_t;

// A record is its kind in one byte, the length of its text in four bytes of the machine's order,
// and the text.
enum class WorkerRecord : unsigned char {
  kStarted,        // the worker has been loaded and begins its task
  kMemoryRefused,  // an allocation was refused
  kNote,           // a sentence for the user
  kText,           // a part of the task's result
  kStage,          // the name of what the task does next
  kReturned,       // the task has returned; its exit code is that of the process
};

inline constexpr std::size_t kRecordHeader = 1 + sizeof(std::uint32_t);

}  // namespace dxf2d
