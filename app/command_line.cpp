#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <map>
#include <string>

#include "app/exit_code.h"
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

void addLabelOptions(CLI::App& command, ExportOptions& options) {
  const std::map<std::string, PlanLabels> labels{{"none", PlanLabels::kNone},
                                                 {"name", PlanLabels::kName}};
  CLI::Option* choice =
      command
          .add_option("--labels", options.plan.labels,
                      "What stands at each object of a model: none, or name, the name of its node")
          ->transform(CLI::CheckedTransformer(labels))
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

// Whole numbers from 1 on, as `Count` takes them.
template <typename Count>
std::string checkCount(const std::string& text) {
  Count count{};
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, count);
  if (error == std::errc() && stopped == end && count > 0) return {};
  return "'" + text + "' is no limit; give a whole number above 0";
}

void addWorkLimits(CLI::App& command, WorkLimits& limits) {
  const CLI::Validator check(checkCount<std::uint32_t>, "");
  command
      .add_option_function<std::uint32_t>(
          "--max-memory",
          [&limits](std::uint32_t mebibytes) { limits.memory = std::uint64_t{mebibytes} << 20; },
          "MiB of memory that one may take; 2048 and 64 times its file if not given")
      ->check(check)
      ->option_text("N");
  command
      .add_option_function<std::uint32_t>(
          "--max-time",
          [&limits](std::uint32_t seconds) { limits.time = std::chrono::seconds(seconds); },
          "Seconds that one may take")
      ->check(check)
      ->option_text("N [" + std::to_string(limits.time.count()) + "]");
}

void addModelLimits(CLI::App& command, ModelLimits& limits) {
  const CLI::Validator check(checkCount<std::size_t>, "");
  command.add_option("--max-nodes", limits.nodes, "Nodes that a model may unfold to")
      ->check(check)
      ->option_text("N [" + std::to_string(limits.nodes) + "]");
  command
      .add_option("--max-vertices", limits.vertices,
                  "Vertices that a model may unfold to, those of instances not counted again")
      ->check(check)
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
      ->transform(CLI::CheckedTransformer(axes))
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
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    exitCode = app.exit(error) == 0 ? kExitDone : kExitUsage;
    return std::nullopt;
  }
  if (inspectCommand->parsed()) return inspecting;
  if (!exportCommand->parsed()) return previewing;
  exporting.plan.view = *parseView(view);
  return exporting;
}
