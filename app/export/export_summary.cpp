#include "app/export/export_summary.h"

#include <algorithm>
#include <cstdio>

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
  if (count == 0) return;
  list += (list.empty() ? "" : ", ") + counted(count, one, many);
}

// A model's labels have one line, and so one text in one INSERT.
std::size_t placedObjects(const DrawingCounts& counts) {
  return counts.placed - std::min(counts.placed, counts.texts);
}

std::string labelsOf(const PlanContent& content, const DrawingCounts& counts) {
  return content.labels == 0 ? "" : ", " + counted(counts.texts, "label", "labels");
}

std::string skipped(const PlanContent& content, const DrawingCounts& counts) {
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
  return list.empty() ? "nothing" : list;
}

}  // namespace

std::string summaryOf(const std::string& drawing, const PlanContent& content,
                      const DrawingCounts& counts, double seconds) {
  return drawing + ": " + counted(placedObjects(counts), "object", "objects") + " (" +
         counted(content.instances, "instance", "instances") + " shared), " +
         counted(content.parts, "part", "parts") + ", " +
         counted(counts.polylines, "polyline", "polylines") + ", " +
         counted(counts.vertices, "vertex", "vertices") + labelsOf(content, counts) + "; " +
         extentOf(content.extent) + "; " + number("%.3f s", seconds) +
         "; skipped: " + skipped(content, counts);
}
