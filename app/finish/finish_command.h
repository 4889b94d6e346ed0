// dxf2d finish: a drawing to work with.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/cli/command.h"
#include "app/finish/finishing.h"
#include "app/output/output_file.h"
#include "app/process/input_task.h"

namespace dxf2d {

struct FinishOptions {
  std::string drawing;
  std::string output;
  // Without release, units and scale, which follow from those below and from the drawing.
  finish::Options finishing;
  std::optional<Release> release;
  // As parseUnits numbers them.
  std::optional<int> units;
  std::optional<int> sourceUnits;
  Existing existing = Existing::kKeep;
  ResourceLimits limits{};
  // All of the above but the drawing, for the worker process.
  OptionWords words{};
  Verbosity verbosity{};
};

inline constexpr const char* kFinishTask = "finish";

// The options of the command line, which store into `options`.
std::vector<Option> finishOptions(FinishOptions& options);

// The command with its options.
Command finishCommand();

// Reads the drawing and writes the finished one. Returns an ExitCode; unless that is kExitDone,
// there is one message on stderr and no new file. What is left out is noted on stderr. Throws
// nothing.
int runFinish(const FinishOptions& options);

}  // namespace dxf2d
