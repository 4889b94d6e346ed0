#include "app/preview/preview_command.h"

#include <cassert>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/cli/run_all.h"
#include "app/cli/translation.h"
#include "app/drawing/drawing_units.h"
#include "app/drawing/text_decoding.h"
#include "app/output/destination.h"

namespace dxf2d {

namespace {

// One drawing and its picture.
struct PreviewJob {
  std::string drawing;
  std::string picture;
  PictureFormat format;
};

bool isForDirectory(const PreviewOptions& options) {
  return options.drawings.size() > 1 || options.output.ends_with('/');
}

PictureFormat formatOf(const PreviewOptions& options) {
  if (options.format || isForDirectory(options)) {
    return options.format.value_or(PictureFormat::kPng);
  }
  const std::optional<PictureFormat> format = pictureFormat(options.output);
  if (!format) {
    throw UsageError({options.output, tr("the picture's format is unknown"),
                      tr("end the name in .png, .svg or .pdf, or give --format")});
  }
  return *format;
}

// Throws UsageError for files that no picture can be made of or written to.
void checkFiles(const PreviewJob& job) {
  if (Destination::IsFile(job.picture, drawingFile(job.drawing))) {
    throw UsageError(
        {job.picture, tr("is the drawing itself"), tr("give the picture another name")});
  }
}

std::vector<PreviewJob> jobsOf(const PreviewOptions& options) {
  namespace fs = std::filesystem;
  const PictureFormat format = formatOf(options);
  std::vector<PreviewJob> jobs;
  std::set<std::string> pictures;
  for (const std::string& drawing : options.drawings) {
    std::string picture = options.output;
    if (isForDirectory(options)) {
      const std::string name = drawing == "-" ? "drawing" : filePath(drawing).stem().string();
      picture = (filePath(options.output) / filePath(name + endOf(format))).string();
    }
    if (!pictures.insert(picture).second) {
      throw UsageError({picture, tr("would be the picture of several drawings"),
                        tr("draw them into different directories")});
    }
    jobs.push_back({drawing, std::move(picture), format});
  }
  return jobs;
}

std::optional<int> parseSize(const std::string& text) {
  const std::optional<std::uint32_t> size = parseCount(text);
  const bool isInRange = size && *size >= static_cast<std::uint32_t>(kMinPictureSize) &&
                         *size <= static_cast<std::uint32_t>(kMaxPictureSize);
  return isInRange ? std::optional(static_cast<int>(*size)) : std::nullopt;
}

int preview(const InputTask& work, const PreviewJob& job, const PreviewOptions& options) {
  checkFiles(job);
  // Before the drawing is read, which may take long: an output that cannot be created is an error
  // at once.
  Destination destination(job.picture, options.existing);
  return deliverFrom(work, {kPreviewTask, {job.drawing, endOf(job.format)}}, options.words,
                     destination, options.verbosity);
}

int previewAll(const PreviewOptions& options) {
  const std::vector<PreviewJob> jobs = jobsOf(options);
  if (isForDirectory(options)) {
    requireDirectory(options.output);
  }
  return runAll(jobs, "%1 of %2 pictures were not drawn", [&](const PreviewJob& job) {
    const InputTask work(tr("the renderer"), drawingFile(job.drawing), options.limits);
    return work.Reporting([&] { return preview(work, job, options); });
  });
}

}  // namespace

std::string drawingFile(const std::string& drawing) {
  return drawing == "-" ? "/dev/stdin" : drawing;
}

std::vector<Option> previewOptions(PreviewOptions& options) {
  Option output{"-o,--output", "PATH",
                "The picture to write: .png, .svg or .pdf; - for standard output. With several "
                "drawings, or with a trailing slash: the directory for pictures that are named "
                "after their drawings",
                "a path", into(options.output, parseText)};
  output.isRequired = true;
  std::vector<Option> all = inGroup(
      "Output",
      {output,
       forceOption(options.existing),
       {"--format", "png|svg|pdf",
        "What to draw (default: what the end of the picture's name says)", "png, svg or pdf",
        into(options.format, oneOf<PictureFormat>({{"png", PictureFormat::kPng},
                                                   {"svg", PictureFormat::kSvg},
                                                   {"pdf", PictureFormat::kPdf}}))},
       {"--size", "N [" + std::to_string(kDefaultPictureSize) + "]",
        "Longer side in pixels, or in points for .pdf; not on paper",
        "a whole number from " + std::to_string(kMinPictureSize) + " to " +
            std::to_string(kMaxPictureSize),
        into(options.style.size, parseSize)},
       {"--codepage", "N [1252]", "Code page of the drawing's texts", kExpectedCodePage,
        into(options.style.codePage, parseCodePage)},
       {"--source-units", "UNIT", "Units of the drawing, if it does not say", kExpectedUnits,
        into(options.sourceUnits, parseUnits)}});
  append(all, inGroup("Paper", sheetOptions(options.style.sheet)));
  append(all, inGroup("Limits", resourceLimitOptions(options.limits)));
  append(all, inGroup("Messages", verbosityOptions(options.verbosity)));
  return all;
}

Command previewCommand() {
  // Shared by the functions below.
  const auto options = std::make_shared<PreviewOptions>();
  Command command;
  command.name = "preview";
  command.summary = "Draws drawings of this program as pictures.";
  command.examples = {
      {"dxf2d preview house.dxf -o house.png", "A picture of 1600 pixels."},
      {"dxf2d preview house.dxf --paper a3 --plot-scale 1:50 --source-units m -o house.pdf",
       "True to size, on paper."}};
  command.inputName = "DRAWING";
  command.inputHelp = "The drawings (.dxf); - for standard input";
  command.takesSeveralInputs = true;
  command.takeInputs = [options](const std::vector<std::string>& inputs) {
    options->drawings = inputs;
  };
  command.options = previewOptions(*options);
  command.run = [options](const OptionWords& words) {
    options->words = words;
    return runPreview(*options);
  };
  return command;
}

int runPreview(const PreviewOptions& options) {
  assert(!options.drawings.empty());
  assert(options.style.size >= kMinPictureSize && options.style.size <= kMaxPictureSize);
  assert(isTextCodePage(options.style.codePage));
  return reporting([&] { return previewAll(options); });
}

}  // namespace dxf2d
