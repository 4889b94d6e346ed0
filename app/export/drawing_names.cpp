#include "app/export/drawing_names.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "app/batch/output_names.h"
#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/translation.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

std::string withHeight(std::string output, const std::string& height) {
  const std::string place = kHeightPlace;
  for (std::size_t at = output.find(place); at != std::string::npos;
       at = output.find(place, at + height.size())) {
    output.replace(at, place.size(), height);
  }
  return output;
}

// Heights that are written alike, or differ in no character of the name.
void checkNames(const std::vector<ExportJob>& jobs) {
  std::set<std::string> names;
  for (const ExportJob& job : jobs) {
    if (!names.insert(job.drawing).second) {
      throw UsageError({job.drawing, tr("would be drawn twice"), tr("name each height once")});
    }
  }
}

bool isFolder(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(filePath(path), ignored);
}

}  // namespace

bool isForDirectory(const ExportOptions& options) {
  return options.models.size() > 1 || options.output.ends_with('/') ||
         !options.batch.lists.empty() || std::ranges::any_of(options.models, isFolder);
}

ExportJobs jobsIntoDirectory(const std::vector<batch::Input>& models, const std::string& output,
                             const std::vector<CutPlane>& cuts, const std::string& end) {
  const batch::OutputStems names = batch::outputStems(models);
  ExportJobs jobs{{}, names.clashes};
  for (std::size_t i = 0; i < models.size(); ++i) {
    const std::string stem = (filePath(output) / filePath(names.stems[i])).string();
    if (cuts.size() > 1) {
      for (const CutPlane& cut : cuts) {
        std::string drawing = stem;
        drawing.append("-").append(cut.text).append(end);
        jobs.jobs.push_back({models[i].path, std::move(drawing), cut});
      }
      continue;
    }
    jobs.jobs.push_back(
        {models[i].path, stem + end, cuts.empty() ? std::nullopt : std::optional(cuts.front())});
  }
  checkNames(jobs.jobs);
  return jobs;
}

std::vector<ExportJob> jobsIntoFile(const std::string& model, const std::string& output,
                                    const std::vector<CutPlane>& cuts) {
  if (cuts.size() < 2) {
    return {{model, output, cuts.empty() ? std::nullopt : std::optional(cuts.front())}};
  }
  if (output == "-") {
    throw UsageError({"", tr("several drawings cannot go to standard output"),
                      tr("name a directory for them with --output")});
  }
  if (output.find(kHeightPlace) == std::string::npos) {
    throw UsageError({output, tr("would be the drawing of several cuts"),
                      tr("write %h where the name is to have their heights")});
  }
  std::vector<ExportJob> jobs;
  jobs.reserve(cuts.size());
  for (const CutPlane& cut : cuts) {
    jobs.push_back({model, withHeight(output, cut.text), cut});
  }
  checkNames(jobs);
  return jobs;
}

}  // namespace dxf2d
