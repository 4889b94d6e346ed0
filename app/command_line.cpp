#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <string>

#include "app/failure.h"
#include "app/model/plan_label.h"
#include "app/model/view.h"

namespace {

constexpr const char* kAbout =
    "Draws plans of 3D models as DXF: outlines seen along one direction, flat, in the model's own "
    "units.";

constexpr const char* kExportAbout =
    "Writes the drawings of models or scenes. MODEL is a scene file (.json) or any model that "
    "assimp reads (IFC, glTF, OBJ, STL, Collada, FBX, 3DS and others). A scene file is drawn "
    "exactly as it stands, without regard to --up, --view, --scale and --labels.";

constexpr const char* kViewAbout =
    "Where the viewer stands: top, bottom, front (at -y, looking along +y), back, left (at -x), "
    "right, iso, or AZIMUTH,ELEVATION in degrees: azimuth from the front, counter-clockwise seen "
    "from above; elevation above the horizon, -90 to 90";

constexpr const char* kExitCodes =
    "Exit codes: 0 done, 2 wrong usage, 3 unreadable input, 4 nothing to draw, 5 output cannot be "
    "created, 6 writing failed, 7 a limit was reached, 8 no plug-in, 9 output exists, 10 some of "
    "several models failed, 1 internal fault. A request to end, such as Ctrl-C, ends it by that "
    "signal.";

std::string checkView(const std::string& text) {
  if (parseView(text)) return {};
  return "'" + text +
         "' is no view; choose top, bottom, front, back, left, right, iso or AZIMUTH,ELEVATION "
         "such as 30,45";
}

std::string checkLabelHeight(const std::string& text) {
  double height = 0.0;
  if (CLI::detail::lexical_cast(text, height) && height >= kMinLabelHeight &&
      height <= kMaxLabelHeight) {
    return {};
  }
  return "'" + text + "' is no height of letters; give a number from 0.000001 to 1e15";
}

std::string checkScale(const std::string& text) {
  double scale = 0.0;
  if (CLI::detail::lexical_cast(text, scale) && std::isfinite(scale) && scale > 0.0) return {};
  return "'" + text + "' is no scale; give a number above 0";
}

// Takes one of the names, and nothing else, for its value.
template <typename Value>
CLI::Validator oneOf(const std::map<std::string, Value>& values) {
  return CLI::Validator(
      [values](std::string& text) -> std::string {
        const auto found = values.find(text);
        if (found != values.end()) {
          text = std::to_string(static_cast<int>(found->second));
          return {};
        }
        std::string names;
        for (const auto& [name, value] : values) names += (names.empty() ? "" : ", ") + name;
        return "'" + text + "' is none of " + names;
      },
      "");
}

void addLabelOptions(CLI::App& command, ExportOptions& options) {
  const std::map<std::string, PlanLabels> labels{{"none", PlanLabels::kNone},
                                                 {"name", PlanLabels::kName}};
  CLI::Option* choice =
      command
          .add_option("--labels", options.plan.labels,
                      "What stands at each object of a model: none, or name, the name of its node")
          ->transform(oneOf(labels))
          ->option_text("none|name [none]");
  command
      .add_option("--label-height", options.plan.labelHeight,
                  "Height of the labels' letters in drawing units; a hundredth of the plan's "
                  "larger side if not given")
      ->check(CLI::Validator(checkLabelHeight, ""))
      ->needs(choice)
      ->option_text("H");
  command
      .add_option("--codepage", options.codePage,
                  "Code page of the drawing's texts from a scene file; labels of models are ASCII")
      ->option_text("N [1252]");
}

void addForce(CLI::App& command, Existing& existing) {
  command.add_flag_callback(
      "-f,--force", [&existing] { existing = Existing::kReplace; },
      "Replaces a file that is already there");
}

// Takes a whole number, as people write them: 010 is ten. `take` is given it.
CLI::Option* addLimit(CLI::App& command, const std::string& name,
                      const std::function<void(std::uint32_t)>& take, const std::string& about) {
  const auto parse = [name, take](const std::string& text) {
    std::uint32_t limit = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, limit);
    if (error != std::errc() || stopped != end || limit == 0) {
      throw CLI::ValidationError(
          name, "'" + text + "' is no limit; give a whole number from 1 to 4294967295");
    }
    take(limit);
  };
  return command.add_option_function<std::string>(name, parse, about);
}

void addWorkLimits(CLI::App& command, WorkLimits& limits) {
  addLimit(
      command, "--max-memory",
      [&limits](std::uint32_t mebibytes) { limits.memory = std::uint64_t{mebibytes} << 20; },
      "MiB of memory that one may take; 2048 and 64 times its file if not given")
      ->option_text("N");
  addLimit(
      command, "--max-time",
      [&limits](std::uint32_t seconds) { limits.time = std::chrono::seconds(seconds); },
      "Seconds that one may take")
      ->option_text("N [" + std::to_string(limits.time.count()) + "]");
}

void addModelLimits(CLI::App& command, ModelLimits& limits) {
  addLimit(
      command, "--max-nodes", [&limits](std::uint32_t count) { limits.nodes = count; },
      "Nodes that a model may unfold to")
      ->option_text("N [" + std::to_string(limits.nodes) + "]");
  addLimit(
      command, "--max-vertices", [&limits](std::uint32_t count) { limits.vertices = count; },
      "Vertices that a model may unfold to, those of instances not counted again")
      ->option_text("N [" + std::to_string(limits.vertices) + "]");
}

CLI::App* addExport(CLI::App& app, ExportOptions& options, std::string& view) {
  CLI::App* command = app.add_subcommand("export", kExportAbout);
  command->add_option("MODEL", options.models, "The models or scene files")->required();
  command
      ->add_option("-o,--output", options.output,
                   "The drawing to write; - is standard output. For several models, or with a "
                   "slash at its end, the directory for drawings that are named as their models")
      ->required();
  addForce(*command, options.existing);
  const std::map<std::string, UpAxis> axes{
      {"auto", UpAxis::kAuto}, {"y", UpAxis::kY}, {"z", UpAxis::kZ}};
  command
      ->add_option("--up", options.plan.up,
                   "The axis of the model that points up: auto (as its format has it), y or z")
      ->transform(oneOf(axes))
      ->option_text("auto|y|z [auto]");
  command->add_option("--view", view, kViewAbout)
      ->check(CLI::Validator(checkView, ""))
      ->option_text("VIEW [top]");
  command
      ->add_option("--scale", options.plan.scale,
                   "Drawing units for one unit of the model; units are not converted otherwise")
      ->check(CLI::Validator(checkScale, ""))
      ->option_text("S [1]");
  addLabelOptions(*command, options);
  command->add_option("--plugin", options.plugin, "The plug-in that draws, if not the own one")
      ->option_text("FILE");
  addWorkLimits(*command, options.limits);
  addModelLimits(*command, options.plan.limits);
  return command;
}

CLI::App* addPreview(CLI::App& app, PreviewOptions& options) {
  CLI::App* command =
      app.add_subcommand("preview", "Draws a drawing of this program as a picture.");
  command->add_option("DRAWING", options.drawing, "The drawing (.dxf)")->required();
  command
      ->add_option("-o,--output", options.picture,
                   "The picture to write; its end says what kind: .png, .svg or .pdf")
      ->required();
  addForce(*command, options.existing);
  command->add_option("--size", options.size, "Longer side in pixels, or points for .pdf")
      ->option_text("N [" + std::to_string(kDefaultPictureSize) + "]");
  command->add_option("--codepage", options.codePage, "Code page of the drawing's texts")
      ->option_text("N [1252]");
  addWorkLimits(*command, options.limits);
  return command;
}

CLI::App* addInspect(CLI::App& app, InspectOptions& options) {
  CLI::App* command = app.add_subcommand(
      "inspect",
      "Looks into a plug-in: its slots, its exports, and how it stands a walk over every kind of "
      "content.");
  command->add_option("PLUGIN", options.plugin, "The plug-in, a loadable module")->required();
  return command;
}

// The arguments as CLI11 takes them, the last one first. It knows [a,b] for a list and ++ for the
// end of a command's arguments; here they are names of files, for which ./ says the same.
std::vector<std::string> argumentsOf(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  for (int i = argc - 1; i > 0; --i) {
    const std::string argument = argv[i];
    const bool isList = argument.starts_with('[') && argument.ends_with(']');
    arguments.push_back((isList || argument == "++" ? "./" : "") + argument);
  }
  return arguments;
}

// Why the arguments are not understood, and where that is explained.
std::string complaint(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  const std::string help =
      "; see dxf2d " + (commands.empty() ? "" : commands.front()->get_name() + " ") + "--help";
  // What is missing may have been meant by a word that is not known.
  const std::vector<std::string> rest = app.remaining(true);
  const auto unknown = std::ranges::find_if(rest, [](const auto& word) { return word != "--"; });
  if (unknown == rest.end()) return error.what() + help;
  return std::string("'").append(*unknown).append("' is not understood").append(help);
}

}  // namespace

std::optional<Command> parseCommandLine(int argc, const char* const* argv, int& exitCode) {
  CLI::App app(kAbout, "dxf2d");
  app.set_version_flag("--version", std::string("dxf2d ") + DXF2D_VERSION);
  app.footer(kExitCodes);
  app.require_subcommand(1);
  ExportOptions exporting;
  PreviewOptions previewing;
  std::string view = "top";
  const CLI::App* exportCommand = addExport(app, exporting, view);
  addPreview(app, previewing);
  InspectOptions inspecting;
  const CLI::App* inspectCommand = addInspect(app, inspecting);
  try {
    app.parse(argumentsOf(argc, argv));
  } catch (const CLI::ParseError& error) {
    const bool isAnswered = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success);
    exitCode = isAnswered ? app.exit(error) : fail(kExitUsage, complaint(app, error));
    return std::nullopt;
  }
  if (inspectCommand->parsed()) return inspecting;
  if (!exportCommand->parsed()) return previewing;
  exporting.plan.view = *parseView(view);
  return exporting;
}
