#include "app/export/line_options.h"

#include <optional>
#include <string>

#include "app/cli/failure.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

constexpr auto kModelsOnly = AppliesTo::kModelsOnly;

constexpr const char* kCutHelp =
    "Remove what is above this height, in drawing units above the model's lowest point as seen in "
    "the view, and draw what the plane cuts; repeatable: a drawing for each height, whose name has "
    "it in place of %h";

std::optional<double> parsePositive(const std::string& text) {
  const std::optional<double> value = parseNumber(text);
  return value && *value > 0.0 ? value : std::nullopt;
}

std::optional<std::string> parseName(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

// An Option::take that adds a plane.
std::function<bool(const std::string&)> addCut(std::vector<CutPlane>& cuts, bool isAbsolute) {
  return [&cuts, isAbsolute](const std::string& text) {
    const std::optional<double> height = isAbsolute ? parseNumber(text) : parsePositive(text);
    if (height) {
      cuts.push_back({*height, isAbsolute, normalized(text)});
    }
    return height.has_value();
  };
}

Option cutOption(const std::string& name, const std::string& value, const std::string& help,
                 const std::string& expected, std::function<bool(const std::string&)> take) {
  Option option{name, value, help, expected, std::move(take), kModelsOnly};
  option.isRepeatable = true;
  return option;
}

}  // namespace

std::vector<Option> lineOptions(ExportOptions& options) {
  LineworkOptions& linework = options.plan.linework;
  const auto parseHidden = oneOf<HiddenLines>({{"show", HiddenLines::kShow},
                                               {"remove", HiddenLines::kRemove},
                                               {"dash", HiddenLines::kDash}});
  const auto parseOutline =
      oneOf<OutlineOf>({{"view", OutlineOf::kWholeView}, {"each", OutlineOf::kEachObject}});
  const auto parseProjection = oneOf<ProjectionAngle>(
      {{"first", ProjectionAngle::kFirst}, {"third", ProjectionAngle::kThird}});
  return {
      {"--hidden", "show|remove|dash [show]", "Lines behind faces: draw, leave out, or draw dashed",
       "show, remove or dash", into(linework.hidden, parseHidden), kModelsOnly},
      {"--dash", "LENGTH",
       "Length of dashes in drawing units (default: 1/100 of the plan's longer side)",
       "a number above 0", into(linework.dashLength, parsePositive), kModelsOnly, false,
       "--hidden"},
      cutOption("--cut", "HEIGHT", kCutHelp, "a number above 0", addCut(options.cuts, false)),
      cutOption("--cut-at", "Z", "The same at a height in the drawing's own coordinates",
                "a number", addCut(options.cuts, true)),
      {"--storey", "NAME",
       "Draw one storey of a building (IFC), seen from above and cut 1.2 m above its floor; * "
       "and ? stand for any letters",
       "the name of a storey", into(options.plan.storey, parseName), kModelsOnly},
      {"--outline", "view|each",
       "Draw only the outline, in closed loops: of the whole view, or of each object",
       "view or each", into(linework.outline, parseOutline), kModelsOnly},
      {"--sheet", "VIEW,...",
       "Several views in one drawing, aligned, with the name of each below it: some of front, "
       "top, right, left, bottom, back and iso",
       "front, top, right, left, bottom, back or iso, each once, with commas between them",
       into(options.sheet.views, parseSheetViews), kModelsOnly},
      {"--projection", "first|third [first]",
       "Arrangement of a sheet's views: first-angle, with top below front and right on its left, "
       "or third-angle, with top above front and right on its right",
       "first or third", into(options.sheet.projection, parseProjection), kModelsOnly, false,
       "--sheet"},
  };
}

namespace {

void checkSheet(const ExportOptions& options) {
  if (!options.sheet.IsWanted()) {
    return;
  }
  if (options.hasView) {
    throw UsageError({"", tr("--sheet names its own views"), tr("leave out --view or --sheet")});
  }
  if (!options.cuts.empty()) {
    throw UsageError(
        {"", tr("--sheet shows whole models"), tr("leave out --cut and --cut-at, or --sheet")});
  }
  if (!options.plan.storey.empty()) {
    throw UsageError({"", tr("--sheet shows whole models"), tr("leave out --storey or --sheet")});
  }
}

}  // namespace

void checkLineOptions(const ExportOptions& options) {
  checkSheet(options);
  const LineworkOptions& linework = options.plan.linework;
  const bool hasOutline = linework.outline != OutlineOf::kNothing;
  if (hasOutline && linework.hidden != HiddenLines::kShow) {
    throw UsageError(
        {"", tr("--outline draws no hidden lines"), tr("leave out --hidden or --outline")});
  }
  if (linework.dashLength && linework.hidden != HiddenLines::kDash) {
    throw UsageError({"", tr("--dash needs --hidden dash"), tr("give both or leave out --dash")});
  }
  if (!options.plan.storey.empty() && !options.cuts.empty()) {
    throw UsageError({"", tr("--storey has a cut of its own"), tr("leave out --cut and --cut-at")});
  }
  if (!options.plan.storey.empty() && options.hasView && options.plan.view != Affine()) {
    throw UsageError({"", tr("--storey is seen from above"), tr("leave out --view")});
  }
  if (linework.outline == OutlineOf::kWholeView && options.plan.labels != PlanLabels::kNone) {
    throw UsageError({"", tr("the outline of the whole view has no objects to label"),
                      tr("use --outline each or leave out --labels")});
  }
}

}  // namespace dxf2d
