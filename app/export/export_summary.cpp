#include "app/export/export_summary.h"

#include <algorithm>
#include <cstdio>

namespace dxf2d {

namespace {

std::string number(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string counted(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string extentOf(const PlanExtent& extent) {
  return number("x %.6g", extent.minX) + number(" to %.6g, ", extent.maxX) +
         number("y %.6g", extent.minY) + number(" to %.6g", extent.maxY);
}

void addSkipped(std::string& list, std::size_t count, const char* one, const char* many) {
  if (count == 0) {
    return;
  }
  list += (list.empty() ? "" : ", ") + counted(count, one, many);
}

// A model's labels have one line, and so one text in one INSERT.
std::size_t placedObjects(const DrawingCounts& counts) {
  return counts.placed - std::min(counts.placed, counts.texts);
}

std::string labelsOf(const PlanContent& content, const DrawingCounts& counts) {
  return content.labels == 0 ? "" : ", " + counted(counts.texts, "label", "labels");
}

std::string unitOf(const PlanContent& content) {
  if (content.drawingUnit == content.modelUnit) {
    return "unit " + unitName(content.modelUnit);
  }
  return "unit " + unitName(content.drawingUnit) + " (model in " + unitName(content.modelUnit) +
         ")";
}

std::string instancesOf(const PlanContent& content) {
  std::string text = counted(content.instances, "instance", "instances") + " shared";
  if (content.unshared != 0) {
    text += ", " + std::to_string(content.unshared) + " unshared";
  }
  return text;
}

// What is wrong with the lines of a cut or an outline.
std::string gapsOf(const PlanContent& content) {
  std::string list;
  addSkipped(list, content.openEnds, "open end of cut lines", "open ends of cut lines");
  addSkipped(list, content.openObjects, "cut object that does not hide its inside",
             "cut objects that do not hide their inside");
  return list.empty() ? "" : "; gaps: " + list;
}

}  // namespace

std::string repairsOf(const MeshWork& work) {
  const dxf2d::mesh::RepairCounts& repair = work.repair;
  std::string list;
  addSkipped(list, repair.pointsWelded, "vertex welded", "vertices welded");
  addSkipped(list, repair.notFinite, "face or line too far out dropped",
             "faces or lines too far out dropped");
  addSkipped(list, repair.repeatedCorners, "repeated corner dropped", "repeated corners dropped");
  addSkipped(list, repair.duplicatePolygons, "double face dropped", "double faces dropped");
  addSkipped(list, repair.contactFaces, "face between touching bodies dropped",
             "faces between touching bodies dropped");
  addSkipped(list, repair.degeneratePolygons, "face without area dropped",
             "faces without area dropped");
  addSkipped(list, repair.duplicateSegments + repair.degenerateSegments,
             "double or empty line dropped", "double or empty lines dropped");
  addSkipped(list, repair.polygonsFlipped, "face flipped", "faces flipped");
  addSkipped(list, repair.piecesTurnedOutward, "body turned outward", "bodies turned outward");
  addSkipped(list, repair.tJunctionsClosed, "T-junction closed", "T-junctions closed");
  addSkipped(list, repair.bentPolygonsSplit, "bent face split", "bent faces split");
  addSkipped(list, repair.nonManifoldEdges, "edge of three or more faces",
             "edges of three or more faces");
  addSkipped(list, repair.nonOrientablePieces, "one-sided surface", "one-sided surfaces");
  addSkipped(list, work.creases, "crease", "creases");
  addSkipped(list, work.noise, "edge of facet noise dropped", "edges of facet noise dropped");
  return list;
}

std::string skippedOf(const PlanContent& content, const DrawingCounts& counts) {
  // An object of which nothing shows has no block, and so no INSERT.
  const std::size_t unseen =
      content.unseenObjects + content.objects - std::min(content.objects, placedObjects(counts));
  std::string list;
  addSkipped(list, content.points, "point (plans show none)", "points (plans show none)");
  addSkipped(list, content.degenerateFaces, "face of a single vertex", "faces of a single vertex");
  addSkipped(list, content.emptyObjects, "object without faces or lines",
             "objects without faces or lines");
  addSkipped(list, unseen, "object of which no edge shows in this view",
             "objects of which no edge shows in this view");
  addSkipped(list, content.meshWork.repair.edgesNotSearched,
             "border edge not searched for T-junctions",
             "border edges not searched for T-junctions");
  addSkipped(list, content.droppedPieces, "piece of an outline that closes no loop",
             "pieces of outlines that close no loop");
  addSkipped(list, content.labelsLeftOut, "label without room", "labels without room");
  return list.empty() ? "nothing" : list;
}

Summary summaryOf(const PlanContent& content, const DrawingCounts& counts) {
  const std::string repairs = repairsOf(content.meshWork);
  const std::string views =
      content.views == 0 ? "" : counted(content.views, "view", "views") + ", ";
  return {views + counted(placedObjects(counts), "object", "objects") + " (" +
              instancesOf(content) + "), " + counted(content.parts, "part", "parts") + ", " +
              counted(counts.polylines, "polyline", "polylines") + ", " +
              counted(counts.vertices, "vertex", "vertices") + labelsOf(content, counts) + "; " +
              extentOf(content.extent) + "; " + unitOf(content) +
              (repairs.empty() ? "" : "; meshes: " + repairs) + gapsOf(content) + "; ",
          "; skipped: " + skippedOf(content, counts)};
}

Summary summaryOf(const PlanContent& content) {
  const std::string repairs = repairsOf(content.meshWork);
  const std::string views =
      content.views == 0 ? "" : counted(content.views, "view", "views") + ", ";
  return {views + counted(content.objects, "object", "objects") + " (" + instancesOf(content) +
              "), " + counted(content.parts, "part", "parts") + "; " + extentOf(content.extent) +
              "; " + unitOf(content) + (repairs.empty() ? "" : "; meshes: " + repairs) +
              gapsOf(content) + "; ",
          "; made by the plug-in, which says no more of it"};
}

std::string finishingSummary(const FinishingPlan& plan, const CompletionReport& report) {
  if (!plan.IsFinished()) {
    return "";
  }
  std::string text = std::string("; finished: ") + releaseName(plan.release);
  if (!plan.reason.empty()) {
    text += " (for " + plan.reason + ")";
  }
  const DrawingCounts& counts = report.counts;
  return text + ", " + counted(counts.polylines, "polyline", "polylines") + " (" +
         std::to_string(counts.closed) + " closed), " +
         counted(counts.vertices, "vertex", "vertices");
}

}  // namespace dxf2d
