#include "app/export/drawing_names.h"

#include <filesystem>
#include <map>

#include "app/failure.h"

namespace {

namespace fs = std::filesystem;

std::string drawingIn(const std::string& directory, const std::string& model) {
  return (fs::path(directory) / fs::path(model).filename().replace_extension(".dxf")).string();
}

[[noreturn]] void failOverOneName(const std::string& one, const std::string& other,
                                  const std::string& drawing) {
  throw UsageError("'" + one + "' and '" + other + "' would both be drawn to '" + drawing +
                   "'; draw them into different directories");
}

}  // namespace

std::vector<ExportJob> exportJobs(const std::vector<std::string>& models,
                                  const std::string& output) {
  if (models.size() == 1 && !output.ends_with('/')) return {{models.front(), output}};
  if (output == "-") {
    throw UsageError("several drawings cannot go to standard output; name a directory for them");
  }
  std::vector<ExportJob> jobs;
  std::map<std::string, std::string> modelOf;
  for (const std::string& model : models) {
    std::string drawing = drawingIn(output, model);
    const auto [other, isNew] = modelOf.emplace(drawing, model);
    if (!isNew) failOverOneName(other->second, model, drawing);
    jobs.push_back({model, std::move(drawing)});
  }
  return jobs;
}
