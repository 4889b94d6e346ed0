#include "app/export/export_summary.h"

#include <algorithm>
#include <cstdio>

#include "app/cli/translation.h"

namespace dxf2d {

namespace {

std::string number(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

std::string counted(std::size_t count, const char* one, const char* many) {
  return trn(one, many, count, {std::to_string(count)});
}

std::string extentOf(const PlanExtent& extent) {
  return tr("x %1 to %2, y %3 to %4",
            {number(extent.minX), number(extent.maxX), number(extent.minY), number(extent.maxY)});
}

// Of what was counted, with commas between. inEnglish (app/cli/translation.h) knows its text.
class CountList {
 public:
  void Add(std::size_t count, const char* one, const char* many) {
    if (count == 0) {
      return;
    }
    const std::string separator = text_.empty() ? "" : ", ";
    const std::string text = counted(count, one, many);
    text_ += separator + text;
    english_ += separator + inEnglish(text);
  }

  std::string Text() const {
    rememberEnglish(text_, english_);
    return text_;
  }

 private:
  std::string text_;
  std::string english_;
};

// A model's labels have one line, and so one text in one INSERT.
std::size_t placedObjects(const DrawingCounts& counts) {
  return counts.placed - std::min(counts.placed, counts.texts);
}

std::string labelsOf(const PlanContent& content, const DrawingCounts& counts) {
  return content.labels == 0 ? "" : ", " + counted(counts.texts, "%1 label", "%1 labels");
}

std::string unitOf(const PlanContent& content) {
  if (content.drawingUnit == content.modelUnit) {
    return tr("unit %1", {tr(unitName(content.modelUnit).c_str())});
  }
  return tr("unit %1 (model in %2)",
            {unitName(content.drawingUnit), tr(unitName(content.modelUnit).c_str())});
}

std::string instancesOf(const PlanContent& content) {
  std::string text = counted(content.instances, "%1 instance shared", "%1 instances shared");
  if (content.unshared != 0) {
    text += tr(", %1 unshared", {std::to_string(content.unshared)});
  }
  return text;
}

// What is wrong with the lines of a cut or an outline.
std::string gapsOf(const PlanContent& content) {
  CountList list;
  list.Add(content.openEnds, "%1 open end of cut lines", "%1 open ends of cut lines");
  list.Add(content.openObjects, "%1 cut object that does not hide its inside",
           "%1 cut objects that do not hide their inside");
  const std::string text = list.Text();
  return text.empty() ? "" : tr("; gaps: %1", {text});
}

}  // namespace

std::string repairsOf(const MeshWork& work) {
  const dxf2d::mesh::RepairCounts& repair = work.repair;
  CountList list;
  list.Add(repair.pointsWelded, "%1 vertex welded", "%1 vertices welded");
  list.Add(repair.notFinite, "%1 face or line too far out dropped",
           "%1 faces or lines too far out dropped");
  list.Add(repair.repeatedCorners, "%1 repeated corner dropped", "%1 repeated corners dropped");
  list.Add(repair.duplicatePolygons, "%1 double face dropped", "%1 double faces dropped");
  list.Add(repair.contactFaces, "%1 face between touching bodies dropped",
           "%1 faces between touching bodies dropped");
  list.Add(repair.degeneratePolygons, "%1 face without area dropped",
           "%1 faces without area dropped");
  list.Add(repair.duplicateSegments + repair.degenerateSegments, "%1 double or empty line dropped",
           "%1 double or empty lines dropped");
  list.Add(repair.polygonsFlipped, "%1 face flipped", "%1 faces flipped");
  list.Add(repair.piecesTurnedOutward, "%1 body turned outward", "%1 bodies turned outward");
  list.Add(repair.tJunctionsClosed, "%1 T-junction closed", "%1 T-junctions closed");
  list.Add(repair.bentPolygonsSplit, "%1 bent face split", "%1 bent faces split");
  list.Add(repair.nonManifoldEdges, "%1 edge of three or more faces",
           "%1 edges of three or more faces");
  list.Add(repair.nonOrientablePieces, "%1 one-sided surface", "%1 one-sided surfaces");
  list.Add(work.creases, "%1 crease", "%1 creases");
  list.Add(work.noise, "%1 edge of facet noise dropped", "%1 edges of facet noise dropped");
  return list.Text();
}

std::string skippedOf(const PlanContent& content, const DrawingCounts& counts) {
  // An object of which nothing shows has no block, and so no INSERT.
  const std::size_t unseen =
      content.unseenObjects + content.objects - std::min(content.objects, placedObjects(counts));
  CountList list;
  list.Add(content.points, "%1 point (plans show none)", "%1 points (plans show none)");
  list.Add(content.degenerateFaces, "%1 face of a single vertex", "%1 faces of a single vertex");
  list.Add(content.emptyObjects, "%1 object without faces or lines",
           "%1 objects without faces or lines");
  list.Add(unseen, "%1 object of which no edge shows in this view",
           "%1 objects of which no edge shows in this view");
  list.Add(content.meshWork.repair.edgesNotSearched, "%1 border edge not searched for T-junctions",
           "%1 border edges not searched for T-junctions");
  list.Add(content.droppedPieces, "%1 piece of an outline that closes no loop",
           "%1 pieces of outlines that close no loop");
  list.Add(content.labelsLeftOut, "%1 label without room", "%1 labels without room");
  const std::string text = list.Text();
  return text.empty() ? tr("nothing") : text;
}

Summary summaryOf(const PlanContent& content, const DrawingCounts& counts) {
  const std::string repairs = repairsOf(content.meshWork);
  const std::string views =
      content.views == 0 ? "" : counted(content.views, "%1 view", "%1 views") + ", ";
  return {views + counted(placedObjects(counts), "%1 object", "%1 objects") + " (" +
              instancesOf(content) + "), " + counted(content.parts, "%1 part", "%1 parts") + ", " +
              counted(counts.polylines, "%1 polyline", "%1 polylines") + ", " +
              counted(counts.vertices, "%1 vertex", "%1 vertices") + labelsOf(content, counts) +
              "; " + extentOf(content.extent) + "; " + unitOf(content) +
              (repairs.empty() ? "" : tr("; meshes: %1", {repairs})) + gapsOf(content) + "; ",
          tr("; skipped: %1", {skippedOf(content, counts)})};
}

Summary summaryOf(const PlanContent& content) {
  const std::string repairs = repairsOf(content.meshWork);
  const std::string views =
      content.views == 0 ? "" : counted(content.views, "%1 view", "%1 views") + ", ";
  return {views + counted(content.objects, "%1 object", "%1 objects") + " (" +
              instancesOf(content) + "), " + counted(content.parts, "%1 part", "%1 parts") + "; " +
              extentOf(content.extent) + "; " + unitOf(content) +
              (repairs.empty() ? "" : tr("; meshes: %1", {repairs})) + gapsOf(content) + "; ",
          tr("; made by the plug-in, which says no more of it")};
}

std::string finishingSummary(const FinishingPlan& plan, const CompletionReport& report) {
  if (!plan.IsFinished()) {
    return "";
  }
  std::string text = tr("; finished: %1", {releaseName(plan.release)});
  if (!plan.reason.empty()) {
    text += tr(" (for %1)", {plan.reason});
  }
  const DrawingCounts& counts = report.counts;
  return text + ", " + counted(counts.polylines, "%1 polyline", "%1 polylines") + " (" +
         tr("%1 closed", {std::to_string(counts.closed)}) + "), " +
         counted(counts.vertices, "%1 vertex", "%1 vertices");
}

}  // namespace dxf2d
