#include "app/export/export_call.h"

#include <algorithm>
#include <cassert>

#include "app/host/plugin_module.h"

namespace dxf2d {

namespace {

// The job, the format, whether there is a preview, and what is known of the plug-in.
constexpr std::size_t kJobWords = 7;

// Those of ImportedFile.
constexpr std::size_t kImportedWords = 4;

void addImported(const ImportedFile& imported, WorkerCall& call) {
  call.Add(
      {std::to_string(imported.file), imported.reader, imported.withoutEffect, imported.unpacked});
  if (imported.IsThere()) {
    call.descriptors.push_back(imported.file);
  }
}

ImportedFile importedOf(std::span<const std::string> words) {
  return {std::stoi(words[0]), words[1], words[2], words[3]};
}

// Which of the options' cuts is that of the job; their number when it has none.
std::size_t cutOf(const ExportJob& job, const ExportOptions& options) {
  const auto isCut = [&](const CutPlane& cut) {
    return job.cut && cut.height == job.cut->height && cut.isAbsolute == job.cut->isAbsolute;
  };
  const auto cut = std::ranges::find_if(options.cuts, isCut);
  return static_cast<std::size_t>(cut - options.cuts.begin());
}

ExportOptions optionsOf(std::span<const std::string> words) {
  ExportOptions options;
  takeOptions(exportOptions(options), words);
  options.plan.threading = {options.threads.value_or(1), processThreading().leastWork};
  return options;
}

}  // namespace

WorkerCall callToExport(const ExportJob& job, const ExportOptions& options,
                        const WorkOutput& output, const std::optional<WorkOutput>& preview,
                        const ImportedFile& imported) {
  assert(options.format);
  WorkerCall call{kExportTask,
                  {job.model, job.drawing, std::to_string(cutOf(job, options)),
                   endOfFormat(*options.format).substr(1), preview ? "1" : "0",
                   options.pluginFacts.isOwn ? "1" : "0", options.pluginFacts.end},
                  {output.file}};
  addImported(imported, call);
  call.Add(output.Words());
  if (preview) {
    call.descriptors.push_back(preview->file);
    call.Add(preview->Words());
  }
  call.Add(options.words);
  call.threads = options.threads.value_or(1);
  call.Add({"--threads", std::to_string(call.threads)});
  if (options.plugin.empty()) {
    // The worker stands elsewhere.
    call.Add({"--plugin", pluginFile("")});
  }
  return call;
}

WorkerCall callToList(const std::string& model, const ExportOptions& options,
                      const ImportedFile& imported) {
  WorkerCall call{kListTask, {model}};
  addImported(imported, call);
  call.Add(options.words);
  return call;
}

ExportArguments exportArgumentsOf(std::span<const std::string> words) {
  ExportArguments arguments;
  arguments.job = {words[0], words[1], {}};
  const std::size_t cut = std::stoul(words[2]);
  const std::optional<OutputFormat> format = parseOutputFormat(words[3]);
  const bool hasPreview = words[4] == "1";
  const bool hasOwnPlugin = words[5] == "1";
  const std::string pluginEnd = words[6];
  words = words.subspan(kJobWords);
  arguments.imported = importedOf(words);
  words = words.subspan(kImportedWords);
  arguments.output = WorkOutput::Of(words);
  words = words.subspan(WorkOutput::kWords);
  if (hasPreview) {
    arguments.preview = WorkOutput::Of(words);
    words = words.subspan(WorkOutput::kWords);
  }
  arguments.options = optionsOf(words);
  arguments.options.format = format;
  arguments.options.pluginFacts.isOwn = hasOwnPlugin;
  arguments.options.pluginFacts.end = pluginEnd;
  if (cut < arguments.options.cuts.size()) {
    arguments.job.cut = arguments.options.cuts[cut];
  }
  return arguments;
}

ExportArguments listArgumentsOf(std::span<const std::string> words) {
  ExportArguments arguments;
  arguments.job.model = words[0];
  arguments.imported = importedOf(words.subspan(1));
  arguments.options = optionsOf(words.subspan(1 + kImportedWords));
  return arguments;
}

}  // namespace dxf2d
