// What the drawings of several models are called.
#pragma once

#include <string>
#include <vector>

#include "app/batch/batch_input.h"
#include "app/export/export_request.h"

namespace dxf2d {

// In the name of a single model's drawings: replaced by the height of each cut.
inline constexpr const char* kHeightPlace = "%h";

struct ExportJobs {
  std::vector<ExportJob> jobs;
  // One sentence for each name that several models would have given their drawings.
  std::vector<std::string> clashes;
};

// The jobs that draw `models` into the directory `output`, in order. Each drawing has its model's
// name (see batch::outputStems) with `end` in place of its own, in the folder of the same name.
// With several `cuts`, each model has a drawing for each: their heights, as the user wrote them,
// stand after a hyphen at the end of the name.
ExportJobs jobsIntoDirectory(const std::vector<batch::Input>& models, const std::string& output,
                             const std::vector<CutPlane>& cuts = {},
                             const std::string& end = ".dxf");

// The jobs that draw one model into the file `output`, or into one for each of several `cuts`,
// whose heights take the place of kHeightPlace. Throws UsageError when `output` has no such place
// where it needs one, and when two drawings would have one name.
std::vector<ExportJob> jobsIntoFile(const std::string& model, const std::string& output,
                                    const std::vector<CutPlane>& cuts = {});

// Whether the output is a directory for drawings.
bool isForDirectory(const ExportOptions& options);

}  // namespace dxf2d
