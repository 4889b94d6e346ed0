#include "app/model/sheet_scene.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "app/model/dashes.h"
#include "app/model/object_names.h"
#include "app/model/plan_label.h"
#include "app/model/view.h"

namespace dxf2d {
namespace {

// In parts of the longest side of any view.
constexpr double kGapShare = 0.15;
// The heights of views' names, and how far below the view their middles are, in heights of labels
// of objects.
constexpr double kNameHeight = 2.0;
constexpr double kNameDistance = 4.5;

double longestSide(const std::vector<PlanScene>& plans) {
  double longest = 0.0;
  for (const PlanScene& plan : plans) {
    const PlanExtent& extent = plan.content.extent;
    if (!extent.IsEmpty()) {
      longest = std::max({longest, extent.maxX - extent.minX, extent.maxY - extent.minY});
    }
  }
  return longest;
}

PlanExtent moved(const PlanExtent& extent, const std::array<double, 2>& shift) {
  return {extent.minX + shift[0], extent.minY + shift[1], extent.maxX + shift[0],
          extent.maxY + shift[1]};
}

// Adds what depends on the view to the content of the sheet.
void addCounts(const PlanContent& view, PlanContent& sheet) {
  sheet.objects += view.objects;
  sheet.instances += view.instances;
  sheet.unshared += view.unshared;
  sheet.parts += view.parts;
  sheet.labels += view.labels;
  sheet.labelsLeftOut += view.labelsLeftOut;
  sheet.unseenObjects += view.unseenObjects;
  sheet.openEnds += view.openEnds;
  sheet.openObjects += view.openObjects;
  sheet.droppedPieces += view.droppedPieces;
  sheet.dashLength = std::max(sheet.dashLength, view.dashLength);
}

// What the views have in common, as the first of them has it.
PlanScene startSheet(const PlanContent& first) {
  PlanScene sheet;
  sheet.content.points = first.points;
  sheet.content.degenerateFaces = first.degenerateFaces;
  sheet.content.emptyObjects = first.emptyObjects;
  sheet.content.meshWork = first.meshWork;
  sheet.content.modelUnit = first.modelUnit;
  sheet.content.drawingUnit = first.drawingUnit;
  return sheet;
}

KtSceneNode makeViewNode(std::vector<KtSceneNode> nodes, const std::array<double, 2>& shift) {
  KtSceneNode group;
  PlanPlacement placement;
  placement.shift = {shift[0], shift[1], 0.0};
  group.matrix = placement.Matrix();
  group.children = std::move(nodes);
  return group;
}

// The text has the letters of a view's name, which are ASCII.
std::u16string inCapitals(const std::string& view) {
  std::u16string text;
  std::ranges::transform(view, std::back_inserter(text),
                         [](char c) { return static_cast<char16_t>(c - 'a' + 'A'); });
  return text;
}

KtSceneNode makeNameNode(const std::string& view, const PlanExtent& extent, double labelHeight,
                         int color, ObjectNames& names) {
  const std::array<double, 2> center = extent.Center();
  const double height = std::clamp(kNameHeight * labelHeight, kMinLabelHeight, kMaxLabelHeight);
  return makeLabelNode(
      {inCapitals(view), {center[0], extent.minY - kNameDistance * labelHeight}, height, false},
      color, names.Unique("label"));
}

// The plan of each view. Sets the sizes in `options` that are not given to those of the first view
// that shows something.
std::vector<PlanScene> drawViews(const aiScene& model, const ModelSource& source,
                                 const std::vector<std::string>& views, PlanOptions& options,
                                 ObjectNames& names) {
  std::vector<PlanScene> plans;
  for (const std::string& view : views) {
    options.view = *parseView(view);
    names.SetEnding(view);
    plans.push_back(makeViewScene(model, source, options, names));
    const PlanExtent& extent = plans.back().content.extent;
    if (extent.IsEmpty()) {
      continue;
    }
    options.labelHeight = options.labelHeight.value_or(labelHeightFor(extent));
    options.linework.dashLength = options.linework.dashLength.value_or(defaultDashLength(extent));
  }
  names.SetEnding("");
  return plans;
}

}  // namespace

PlanScene makeSheetScene(const aiScene& model, const ModelSource& source,
                         const PlanOptions& options, const SheetOptions& sheetOptions) {
  PlanOptions viewOptions = options;
  ObjectNames names;
  std::vector<PlanScene> plans = drawViews(model, source, sheetOptions.views, viewOptions, names);
  PlanScene sheet = startSheet(plans.front().content);
  std::vector<PlanExtent> extents;
  for (const PlanScene& plan : plans) {
    addCounts(plan.content, sheet.content);
    extents.push_back(plan.content.extent);
  }
  requireObjects(sheet.content, source, options);
  const auto shifts = placeViews(sheetOptions.views, extents, sheetOptions.projection,
                                 kGapShare * longestSide(plans));
  for (std::size_t i = 0; i < plans.size(); ++i) {
    if (!shifts[i]) {
      continue;
    }
    const PlanExtent extent = moved(extents[i], *shifts[i]);
    sheet.content.extent.Add(extent);
    ++sheet.content.views;
    ++sheet.content.labels;
    sheet.scene.nodes.push_back(makeViewNode(std::move(plans[i].scene.nodes), *shifts[i]));
    sheet.scene.nodes.push_back(makeNameNode(sheetOptions.views[i], extent,
                                             *viewOptions.labelHeight, options.labelColor, names));
    if (options.wantsSources) {
      sheet.sources.emplace_back().nodes = std::move(plans[i].sources);
      NodeSource& name = sheet.sources.emplace_back();
      name.object = {sheetOptions.views[i], i + 1};
      name.leaves.push_back({{}, kNoTrueColor, PartKind::kLabel});
    }
  }
  return sheet;
}

}  // namespace dxf2d
