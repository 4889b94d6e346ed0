// The command line of dxf2d export.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

#include "app/cli/config_file.h"
#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/export/export_command.h"
#include "app/export/import_step.h"
#include "app/export/line_options.h"
#include "app/model/plan_label.h"
#include "app/model/view.h"
#include "platform/parallel.h"

namespace dxf2d {
namespace {

constexpr const char* kSummary = "Writes the drawings of models or scenes.";

constexpr const char* kHelp =
    "Drawings are see-through unless --hidden says otherwise. MODEL is a scene file (.json) or a "
    "model in any format that dxf2d formats lists (IFC, STEP, glTF, OBJ, STL, Collada, FBX, 3DS "
    "and others). A scene file is drawn exactly as it is; options that change how a model is drawn "
    "do not apply to it. Defaults of most options for models can be set in a configuration file, "
    "in TOML: lines such as hidden = \"remove\" or explode = true below [export].";

constexpr const char* kOutputHelp =
    "The drawing to write; - for standard output. With several models or a folder of them, or with "
    "a trailing slash: the directory for drawings that are named after their models";

constexpr const char* kViewHelp =
    "Where the viewer stands: top, bottom, front (at -y, looking along +y), back, left (at -x), "
    "right, iso, or AZIMUTH,ELEVATION in degrees: azimuth from the front, counter-clockwise seen "
    "from above; elevation above the horizon, -90 to 90";

constexpr auto kModelsOnly = AppliesTo::kModelsOnly;

std::optional<double> parseLabelHeight(const std::string& text) {
  const std::optional<double> height = parseNumber(text);
  const bool isInRange = height && *height >= kMinLabelHeight && *height <= kMaxLabelHeight;
  return isInRange ? height : std::nullopt;
}

std::optional<double> parseCreases(const std::string& text) {
  if (normalized(text) == "off") {
    return mesh::kNoCreases;
  }
  const std::optional<double> degrees = parseNumber(text);
  return degrees && *degrees >= 0.0 && *degrees <= mesh::kNoCreases ? degrees : std::nullopt;
}

std::optional<double> parseWeldShare(const std::string& text) {
  // Above it, an object would be welded to a few points.
  constexpr double kLargest = 0.01;
  const std::optional<double> share = parseNumber(text);
  return share && *share >= 0.0 && *share <= kLargest ? share : std::nullopt;
}

std::optional<int> parseColorIndex(const std::string& text) {
  const std::optional<std::uint32_t> index = parseCount(text);
  return index && *index <= 255 ? std::optional(static_cast<int>(*index)) : std::nullopt;
}

// An Option::take that adds a pattern to a list.
std::function<bool(const std::string&)> addTo(std::vector<std::string>& patterns) {
  return [&patterns](const std::string& text) {
    patterns.push_back(text);
    return !text.empty();
  };
}

// An Option::take of a flag.
std::function<bool(const std::string&)> setTrue(bool& flag) {
  return [&flag](const std::string&) { return flag = true; };
}

std::vector<Option> outputOptions(ExportOptions& options) {
  Option output{"-o,--output", "PATH", kOutputHelp, "a path", into(options.output, parseText)};
  output.isRequired = true;
  Option preview{"--preview", "FILE", "A picture beside the drawing: .png, .svg or .pdf",
                 "a file name", into(options.preview, parseText)};
  return {output,
          forceOption(options.existing),
          {"--format", "dxf|svg|pdf|png|html",
           "What to write (default: what the end of the output's name says, else dxf)",
           kExpectedFormat, into(options.format, parseOutputFormat)},
          preview};
}

// How many models are drawn in one run.
std::vector<Option> batchOptions(BatchOptions& batch) {
  const auto addList = [&batch](const std::string& text) {
    batch.lists.push_back(text);
    return !text.empty();
  };
  const auto skip = [&batch](Skipped skipped) {
    return [&batch, skipped](const std::string&) {
      batch.skipped = skipped;
      return true;
    };
  };
  const auto parseJobs = [](const std::string& text) -> std::optional<unsigned> {
    constexpr unsigned kMost = 1000;
    const std::optional<std::uint32_t> count = parseCount(text);
    return count && *count >= 1 && *count <= kMost ? std::optional<unsigned>(*count) : std::nullopt;
  };
  Option fromFile{"--from-file", "LIST",
                  "Also draw the models and folders that a file lists, one a line or with null "
                  "characters between; - for standard input; repeatable",
                  "a file name", addList};
  fromFile.isRepeatable = true;
  return {
      fromFile,
      {"-r,--recursive", "", "Also draw what is in the folders of folders", "",
       setTrue(batch.isRecursive)},
      {"--skip-existing", "", "Leave out models that have a drawing", "", skip(Skipped::kExisting)},
      {"--if-newer", "",
       "Leave out models that are not newer than their drawings; replace older drawings", "",
       skip(Skipped::kNotNewer)},
      {"--jobs", "N", "Models to draw at a time (default: as many as there are processors)",
       "a number from 1 to 1000", into(batch.jobs, parseJobs)},
      {"--keep-going", "", "Draw the other models when one fails (the default)", "",
       setTrue(batch.keepsGoing)},
      {"--fail-fast", "", "Begin no more models when one fails", "", setTrue(batch.failsFast)},
      {"--report", "FILE", "Add a line for each model to this report: .jsonl or .csv",
       "a file name", into(batch.report, parseText)}};
}

// What applies to models only is marked so: one line per option.
std::vector<Option> planOptions(ExportOptions& options) {
  PlanOptions& plan = options.plan;
  const auto takeView = [&options, take = into(plan.view, parseView)](const std::string& text) {
    options.hasView = true;
    return take(text);
  };
  const auto parseUp =
      oneOf<UpAxis>({{"auto", UpAxis::kAuto}, {"y", UpAxis::kY}, {"z", UpAxis::kZ}});
  const auto parseLabels =
      oneOf<PlanLabels>({{"none", PlanLabels::kNone}, {"name", PlanLabels::kName}});
  return {
      {"--up", "auto|y|z [auto]", "Up axis of the model; auto: the one of its format",
       "auto, y or z", into(plan.up, parseUp), kModelsOnly},
      {"--view", "VIEW [top]", kViewHelp,
       "top, bottom, front, back, left, right, iso or AZIMUTH,ELEVATION such as 30,45", takeView,
       kModelsOnly},
      {"--scale", "S [1]", "Drawing units per unit of --units, or of the model without it",
       "a number above 0 or a ratio such as 1:50", into(plan.scale, parseScale), kModelsOnly},
      {"--labels", "none|name [none]", "Label of each object: none, or the name of its node",
       "none or name", into(plan.labels, parseLabels), kModelsOnly},
      {"--label-height", "H",
       "Height of the labels' letters in drawing units (default: 1/100 of the plan's longer side)",
       "a number from 0.000001 to 1e15", into(plan.labelHeight, parseLabelHeight), kModelsOnly,
       false, "--labels"},
  };
}

std::vector<Option> unitOptions(PlanOptions& plan) {
  constexpr const char* kUnits = "mm, cm, m, in or ft";
  return {{"--units", "mm|cm|m|in|ft", "Unit of the drawing (default: the model's own)", kUnits,
           into(plan.units, parseUnit), kModelsOnly},
          {"--source-units", "mm|cm|m|in|ft", "Unit of models whose files state none", kUnits,
           into(plan.sourceUnits, parseUnit), kModelsOnly}};
}

std::vector<Option> objectOptions(PlanOptions& plan) {
  constexpr const char* kPattern = "a pattern of a name or a path, with * and ?";
  Option only{"--only",
              "PATTERN",
              "Draw only objects or groups of this name or path, such as '*wall*'; repeatable",
              kPattern,
              addTo(plan.filter.only),
              kModelsOnly};
  Option exclude{"--exclude",
                 "PATTERN",
                 "Leave out objects or groups of this name or path; repeatable",
                 kPattern,
                 addTo(plan.filter.exclude),
                 kModelsOnly};
  only.isRepeatable = true;
  exclude.isRepeatable = true;
  return {only, exclude};
}

std::vector<Option> listOptions(ExportOptions& options) {
  Option list{"--list",
              "",
              "List the objects of the models instead of drawing them: tree, instances, triangles, "
              "sizes, colors",
              "",
              setTrue(options.isListing),
              kModelsOnly};
  list.onlyWith = {"--json",          "--only",      "--exclude",      "--up",
                   "--source-units",  "--importer",  "--tolerance",    "--spaces",
                   "--allow-outside", "--max-nodes", "--max-vertices", "--max-memory",
                   "--max-time"};
  Option json{"--json", "",
              "Print JSON: a record of each model, as in a report, or the list of --list", "",
              setTrue(options.isJson)};
  return {list, json};
}

std::vector<Option> meshOptions(PlanOptions& plan) {
  const auto parseSwitch = oneOf<bool>({{"on", true}, {"off", false}});
  const auto parseColors = oneOf<PlanColors>(
      {{"model", PlanColors::kModel}, {"dark", PlanColors::kDark}, {"none", PlanColors::kNone}});
  return {
      {"--repair", "on|off [on]",
       "Repair meshes: double faces, windings, gaps between vertices, T-junctions", "on or off",
       into(plan.repair, parseSwitch), kModelsOnly},
      {"--weld", "SHARE [1e-06]",
       "Distance within which vertices are one, as a share of the object's diagonal",
       "a number from 0 to 0.01", into(plan.weldShare, parseWeldShare), kModelsOnly},
      {"--creases", "DEGREES|off [30]", "Draw edges at which a surface bends by more than this",
       "a number from 0 to 180, or off", into(plan.creaseDegrees, parseCreases), kModelsOnly},
      {"--colors", "model|dark|none [dark]",
       "Colors: the model's, the same dark enough for white paper, or none", "model, dark or none",
       into(plan.colors, parseColors), kModelsOnly},
      {"--label-color", "N [7]", "Color index of the labels", "a whole number from 1 to 255",
       into(plan.labelColor, parseColorIndex), kModelsOnly, false, "--labels"},
  };
}

Option flag(const char* names, const char* help, bool& isSet) {
  const auto set = [&isSet](const std::string&) {
    isSet = true;
    return true;
  };
  return {names, "", help, "", set, kModelsOnly};
}

// Of the files that a model refers to.
std::vector<Option> modelFileOptions(ExportOptions& options) {
  return {
      flag("--strict", "Fail when a file of the model is missing, or lines of a cut have open ends",
           options.isStrict),
      flag("--allow-outside", "Let a model refer to files outside its directory",
           options.allowsOutside)};
}

std::vector<Option> modelLimitOptions(ModelLimits& limits) {
  const auto defaultOf = [](std::size_t value) { return "N [" + std::to_string(value) + "]"; };
  return {{"--max-nodes", defaultOf(limits.nodes), "Maximum number of nodes, instances expanded",
           kExpectedCount, into(limits.nodes, parseCount)},
          {"--max-vertices", defaultOf(limits.vertices),
           "Maximum number of vertices, shared geometry counted once", kExpectedCount,
           into(limits.vertices, parseCount)}};
}

Option threadsOption(std::optional<unsigned>& threads) {
  const auto parse = [](const std::string& text) -> std::optional<unsigned> {
    const std::optional<std::uint32_t> count = parseCount(text);
    return count && *count >= 1 && *count <= kMostThreads ? std::optional<unsigned>(*count)
                                                          : std::nullopt;
  };
  return {"--threads", "N",
          "Threads that share the work on a large model (default: as many as there are processors, "
          "shared by the models drawn at a time); the drawing is the same",
          "a number from 1 to 64", into(threads, parse)};
}

}  // namespace

bool isSceneFile(const std::string& path) { return filePath(path).extension() == ".json"; }

namespace {

// Puts the options of these names under a heading of their own.
void regroup(std::vector<Option>& options, const std::vector<std::string>& names,
             const char* group) {
  for (Option& option : options) {
    if (std::ranges::find(names, option.LongName()) != names.end()) {
      option.group = group;
    }
  }
}

// The options that a configuration file may set: none that names files or programs, or lets more
// happen than the user sees on the command line.
void markConfigurable(std::vector<Option>& options) {
  constexpr std::string_view kNames[] = {
      "--up",        "--view",    "--scale",        "--labels",      "--label-height",
      "--units",     "--only",    "--source-units", "--label-color", "--exclude",
      "--repair",    "--weld",    "--creases",      "--colors",      "--hidden",
      "--dash",      "--outline", "--sheet",        "--projection",  "--release",
      "--layers",    "--join",    "--explode",      "--simplify",    "--true-color",
      "--tolerance", "--spaces",  "--strict",       "--jobs",        "--threads",
      "--quiet",     "--verbose", "--max-memory",   "--max-time",    "--max-vertices",
      "--max-nodes"};
  // Beside these options others are an error, which a default is not to cause.
  const std::map<std::string, std::vector<std::string>> overrides{
      {"--sheet", {"--view"}},
      {"--storey", {"--view", "--sheet"}},
      {"--view", {"--sheet"}},
      {"--cut", {"--sheet"}},
      {"--cut-at", {"--sheet"}},
      {"--hidden", {"--outline", "--dash"}},
      {"--outline", {"--hidden", "--dash", "--labels", "--label-height", "--label-color"}},
      {"--labels", {"--outline"}},
      {"--quiet", {"--verbose"}},
      {"--verbose", {"--quiet"}}};
  for (Option& option : options) {
    const std::string name = option.LongName();
    option.isConfigurable = std::ranges::find(kNames, name) != std::end(kNames);
    if (const auto found = overrides.find(name); found != overrides.end()) {
      option.overrides = found->second;
    }
  }
}

}  // namespace

std::vector<Option> exportOptions(ExportOptions& options) {
  options.plan.view = *parseView("top");
  std::vector<Option> all = inGroup("Output", outputOptions(options));
  append(all, inGroup("Many models", batchOptions(options.batch)));
  append(all, inGroup("Messages", verbosityOptions(options.batch.verbosity)));
  append(all, inGroup("View and scale", planOptions(options)));
  append(all, inGroup("View and scale", unitOptions(options.plan)));
  append(all, inGroup("Objects", objectOptions(options.plan)));
  append(all, inGroup("Objects", listOptions(options)));
  append(all, inGroup("Meshes", meshOptions(options.plan)));
  append(all, inGroup("Lines", lineOptions(options)));
  append(all, inGroup("Finished drawings", finishingOptions(options.finishing)));
  append(all, inGroup("Pictures", sheetOptions(options.picture.sheet)));
  append(all,
         inGroup("Reading", {{"--codepage", "N [1252]",
                              "Code page of the texts of scene files; labels of models are ASCII",
                              kExpectedCodePage, into(options.codePage, parseCodePage)},
                             {"--plugin", "FILE", "Use another plug-in than the installed one",
                              "a file name", into(options.plugin, parseText)},
                             importerOption(options.importers)}));
  append(all, inGroup("Reading", importSettingOptions(options.importSettings)));
  append(all, inGroup("Reading", modelFileOptions(options)));
  append(all, inGroup("Limits", {threadsOption(options.threads)}));
  append(all, inGroup("Limits", resourceLimitOptions(options.limits)));
  append(all, inGroup("Limits", modelLimitOptions(options.plan.limits)));
  regroup(all, {"--labels", "--label-height", "--label-color"}, "Labels");
  regroup(all, {"--json"}, "Messages");
  markConfigurable(all);
  for (Option& option : all) {
    if (option.LongName() == "--view") {
      option.choices = {"top", "bottom", "front", "back", "left", "right", "iso"};
    }
  }
  return all;
}

Command exportCommand() {
  // Shared by the functions below.
  const auto options = std::make_shared<ExportOptions>();
  Command command;
  command.name = "export";
  command.summary = kSummary;
  command.help = kHelp;
  command.examples = {
      {"dxf2d export house.ifc -o house.dxf", "The plan of a house, see-through."},
      {"dxf2d export house.ifc --storey '*Erdgeschoss' --hidden remove -o ground.dxf",
       "Its ground floor, cut 1.2 m above the floor."},
      {"dxf2d export house.ifc --view front --hidden remove -o front.pdf --paper a4",
       "Its front as a picture on paper."},
      {"dxf2d export part.step --sheet front,top,right --hidden dash -o part.dxf",
       "Three views with dashed hidden lines."},
      {"dxf2d export -r models/ -o plans/ --report night.jsonl",
       "All models of a folder, and what became of each."}};
  command.inputName = "MODEL";
  command.inputHelp = "The models or scene files, or folders of models";
  command.inputsOption = "--from-file";
  command.takesSeveralInputs = true;
  command.takeInputs = [options](const std::vector<std::string>& inputs) {
    options->models = inputs;
  };
  command.isScene = isSceneFile;
  command.options = exportOptions(*options);
  command.config = std::make_shared<ConfigRequest>();
  append(command.options, inGroup("Defaults", configOptions(*command.config)));
  command.beforeDefaults = [options](const OptionWords& words) {
    options->forScenes = nullptr;
    auto plain = std::make_shared<ExportOptions>(*options);
    plain->words = words;
    options->forScenes = std::move(plain);
  };
  command.run = [options](const OptionWords& words) {
    options->words = words;
    return runExport(*options);
  };
  return command;
}

}  // namespace dxf2d
