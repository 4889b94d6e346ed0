#include "app/view/view_command.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "app/cli/failure.h"
#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"
#include "app/export/export_command.h"
#include "app/output/destination.h"
#include "app/process/input_task.h"

namespace dxf2d {

namespace {

// Of a command that makes one page of one input.
constexpr auto kNotForPages = std::to_array<std::string_view>(
    {"--format", "--preview", "--from-file", "--recursive", "--skip-existing", "--if-newer",
     "--jobs", "--keep-going", "--fail-fast", "--list", "--json", "--paper", "--plot-scale",
     "--margin", "--dpi"});

constexpr auto kForDrawings = std::to_array<std::string_view>(
    {"--output", "--force", "--title", "--codepage", "--source-units", "--quiet", "--verbose",
     "--max-memory", "--max-time"});

// Throws UsageError for options that only mean something to what makes a drawing of a model.
void checkDrawingOptions(const std::string& drawing, const OptionWords& words) {
  for (std::size_t i = 0; i < words.size(); i += 2) {
    if (!isForDrawings(words[i])) {
      throw UsageError({drawing, tr("%1 does not apply to drawings", {words[i]}),
                        tr("leave it out, or view the model itself")});
    }
  }
}

bool isGiven(const OptionWords& words, const std::string& option) {
  return std::ranges::find(words, option) != words.end();
}

int viewDrawing(const ExportOptions& options) {
  const std::string& drawing = options.models.front();
  const std::string file = drawing == "-" ? "/dev/stdin" : drawing;
  checkDrawingOptions(drawing, options.words);
  const InputTask work(tr("the reader"), file, options.limits);
  return work.Reporting([&] {
    if (Destination::IsFile(options.output, file)) {
      throw UsageError(
          {options.output, tr("is the drawing itself"), tr("give the page another name")});
    }
    Destination destination(options.output, options.existing);
    return deliverFrom(work, {kViewTask, {drawing}}, options.words, destination,
                       options.batch.verbosity);
  });
}

// As dxf2d export would, with what a page is better for: groups as layers, exact colors.
int viewModel(ExportOptions options) {
  options.format = OutputFormat::kHtml;
  OptionWords more;
  for (const auto& [option, value] : {std::pair("--layers", "group"), {"--true-color", ""}}) {
    if (!isGiven(options.words, option) && !options.finishing.release) {
      more.insert(more.end(), {option, value});
    }
  }
  takeOptions(viewOptions(options), more);
  options.words.insert(options.words.end(), more.begin(), more.end());
  return runExport(options);
}

int view(const ExportOptions& options) {
  if (options.output.ends_with('/')) {
    throw UsageError({options.output, tr("is a directory, and a page is one file"),
                      tr("name the file, such as '%1page.html'", {options.output})});
  }
  return isDrawingFile(options.models.front()) ? viewDrawing(options) : viewModel(options);
}

}  // namespace

bool isForDrawings(const std::string& option) {
  return std::ranges::find(kForDrawings, option) != kForDrawings.end();
}

bool isDrawingFile(const std::string& path) {
  return path == "-" || normalized(filePath(path).extension().string()) == ".dxf";
}

std::vector<Option> viewOptions(ExportOptions& options) {
  std::vector<Option> all;
  for (Option& option : exportOptions(options)) {
    const std::string name = option.LongName();
    if (std::ranges::find(kNotForPages, name) != kNotForPages.end()) {
      continue;
    }
    if (name == "--output") {
      option.help = "The page to write (.html); - for standard output";
    } else if (name == "--title") {
      option.help = "Title of the page (default: the name of the input)";
    } else if (name == "--source-units") {
      option.help = "Unit of drawings and models whose files state none";
    } else if (name == "--codepage") {
      option.help = "Code page of the texts of drawings and scene files";
    } else if (name == "--layers") {
      option.value = "none|object|group|material|kind [group]";
    } else if (name == "--release") {
      option.help =
          "Release of the drawing: the plug-in's own (plain), 2000 or 2004 (default, for exact "
          "colors)";
    }
    all.push_back(std::move(option));
  }
  return all;
}

Command viewCommand() {
  // Shared by the functions below.
  const auto options = std::make_shared<ExportOptions>();
  Command command;
  command.name = "view";
  command.summary = "Writes a page that shows a drawing, a model or a scene file in a browser.";
  command.help =
      "The page is one file that needs no network. Models are drawn as dxf2d export draws them, on "
      "a layer for each group (storey) "
      "and in exact colors unless --layers or --release says otherwise.";
  command.examples = {{"dxf2d view house.ifc -o house.html", "A house to look around in."}};
  command.inputName = "DRAWING|MODEL";
  command.inputHelp = "The drawing (.dxf; - for standard input), model or scene file";
  command.takeInputs = [options](const std::vector<std::string>& inputs) {
    options->models = inputs;
  };
  command.isScene = isSceneFile;
  command.options = viewOptions(*options);
  command.run = [options](const OptionWords& words) {
    options->words = words;
    return runView(*options);
  };
  return command;
}

int runView(const ExportOptions& options) {
  return reporting([&] { return view(options); });
}

}  // namespace dxf2d
