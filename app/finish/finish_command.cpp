#include "app/finish/finish_command.h"

#include <memory>

#include "app/cli/failure.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"
#include "app/drawing/drawing_units.h"
#include "app/output/destination.h"

namespace dxf2d {

namespace {

void checkFiles(const FinishOptions& options) {
  const std::string end = Destination::EndOf(options.output);
  if (!end.empty() && normalized(end) != ".dxf") {
    throw UsageError({options.output, tr("a finished drawing is a DXF file"),
                      tr("end the name in .dxf; for pictures use dxf2d preview")});
  }
  if (Destination::IsFile(options.output, options.drawing)) {
    throw UsageError({options.output, tr("is the drawing itself"),
                      tr("give the finished drawing another name")});
  }
}

int finishDrawingFile(const InputTask& work, const FinishOptions& options) {
  checkFiles(options);
  Destination destination(options.output, options.existing);
  return deliverFrom(work, {kFinishTask, {options.drawing}}, options.words, destination,
                     options.verbosity);
}

std::optional<double> parseLength(const std::string& text) {
  const std::optional<double> length = parseNumber(text);
  return length && *length > 0.0 ? length : std::nullopt;
}

std::optional<double> parseTolerance(const std::string& text) {
  const std::optional<double> tolerance = parseNumber(text);
  return tolerance && *tolerance >= 0.0 ? tolerance : std::nullopt;
}

// Takes what finishing a drawing cannot do, to say why.
std::function<bool(const std::string&)> refuse(const char* problem) {
  return [problem](const std::string& value) -> bool {
    if (normalized(value) == "none") {
      return true;
    }
    throw UsageError({"", tr(problem), tr("give the option to dxf2d export")});
  };
}

std::vector<Option> finishingOptions(FinishOptions& options) {
  finish::Options& finishing = options.finishing;
  return {{"--release", "r2000|r2004",
           "Release of the finished drawing (default: its own, if it is finished, else r2000)",
           "r2000 or r2004",
           into(options.release,
                oneOf<Release>({{"r2000", Release::kR2000}, {"r2004", Release::kR2004}}))},
          {"--join", "on|off [on]",
           "Join overlapping lines into one, and consecutive lines into polylines", "on or off",
           into(finishing.join, oneOf<bool>({{"on", true}, {"off", false}}))},
          {"--explode", "", "Explode blocks: draw everything in its place", "",
           [&finishing](const std::string&) {
             finishing.explode = true;
             return true;
           }},
          {"--simplify", "TOL [0]", "Leave out points within TOL drawing units of the line",
           "a number from 0", into(finishing.simplifyTolerance, parseTolerance)},
          {"--units", "UNIT", "Units of the finished drawing, into which lengths are converted",
           kExpectedUnits, into(options.units, parseUnits)},
          {"--source-units", "UNIT", "Units of the drawing, if it does not say", kExpectedUnits,
           into(options.sourceUnits, parseUnits)},
          {"--layers", "none [none]", "Layers: those of the drawing, which names no others", "none",
           refuse("a drawing does not say what objects, materials and kinds of lines it shows")},
          {"--true-color", "", "For dxf2d export alone, which knows the exact colors", "",
           refuse("a drawing does not have the exact colors of its model")},
          {"--dash", "L", "Length of the dashes of hidden lines, in units of the finished drawing",
           "a number above 0", into(finishing.dashLength, parseLength)},
          {"--codepage", "N [1252]", "Code page of the drawing's texts", kExpectedCodePage,
           into(finishing.codePage, parseCodePage)}};
}

}  // namespace

std::vector<Option> finishOptions(FinishOptions& options) {
  Option output{"-o,--output", "FILE", "The finished drawing to write; - for standard output",
                "a file name", into(options.output, parseText)};
  output.isRequired = true;
  std::vector<Option> all = inGroup("Output", {output, forceOption(options.existing)});
  append(all, inGroup("Finishing", finishingOptions(options)));
  append(all, inGroup("Limits", resourceLimitOptions(options.limits)));
  append(all, inGroup("Messages", verbosityOptions(options.verbosity)));
  return all;
}

Command finishCommand() {
  // Shared by the functions below.
  const auto options = std::make_shared<FinishOptions>();
  Command command;
  command.name = "finish";
  command.summary =
      "Prepares a drawing for further work: a later release, units, joined and closed lines.";
  command.examples = {
      {"dxf2d finish house.dxf -o house-2000.dxf", "Release 2000, with joined lines."},
      {"dxf2d finish house.dxf --source-units m --units mm --explode -o flat.dxf",
       "In millimeters, everything in its place instead of in blocks."}};
  command.inputName = "DRAWING";
  command.inputHelp = "The drawing (.dxf), also a finished one";
  command.takeInputs = [options](const std::vector<std::string>& inputs) {
    options->drawing = inputs.front();
  };
  command.options = finishOptions(*options);
  command.run = [options](const OptionWords& words) {
    options->words = words;
    return runFinish(*options);
  };
  return command;
}

int runFinish(const FinishOptions& options) {
  const InputTask work(tr("the finishing pass"), options.drawing, options.limits);
  return work.Reporting([&] { return finishDrawingFile(work, options); });
}

}  // namespace dxf2d
