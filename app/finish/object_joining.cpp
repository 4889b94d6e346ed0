#include "app/finish/object_joining.h"

#include <iterator>
#include <map>
#include <tuple>
#include <utility>
#include <variant>

#include "app/linework/linework.h"
#include "app/linework/simplification.h"

namespace dxf2d::finish {

namespace {

struct Group {
  EntityProperties properties;
  // Ends of segments, in pairs, and how many they will be.
  std::vector<PlanPoint> ends;
  std::size_t count = 0;
};

auto keyOf(const EntityProperties& properties) {
  return std::tuple(properties.layer, properties.color, properties.trueColor, properties.lineWeight,
                    properties.lineType);
}

void appendLine(std::vector<PlanPoint>& ends, const std::vector<PlanPoint>& points, bool closed) {
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    ends.push_back(points[i]);
    ends.push_back(points[i + 1]);
  }
  if (closed && !points.empty()) {
    ends.push_back(points.back());
    ends.push_back(points.front());
  }
}

// Appends the segments of what is made of lines.
void appendSegments(std::vector<PlanPoint>& ends, const DrawingEntity& entity) {
  if (const auto* polyline = std::get_if<PolylineEntity>(&entity)) {
    appendLine(ends, polyline->vertices, polyline->closed);
  } else if (const auto* line = std::get_if<LineEntity>(&entity)) {
    ends.insert(ends.end(), {line->start, line->end});
  } else if (const auto* face = std::get_if<FaceEntity>(&entity)) {
    appendLine(ends, {face->corners.begin(), face->corners.end()}, true);
  }
}

// How many ends appendSegments appends at most; 0 for what is not made of lines.
std::size_t countEnds(const DrawingEntity& entity) {
  if (const auto* polyline = std::get_if<PolylineEntity>(&entity)) {
    return 2 * polyline->vertices.size();
  }
  if (const auto* face = std::get_if<FaceEntity>(&entity)) {
    return 2 * face->corners.size();
  }
  return std::holds_alternative<LineEntity>(entity) ? 2 : 0;
}

bool isLinework(const DrawingEntity& entity) {
  return std::holds_alternative<PolylineEntity>(entity) ||
         std::holds_alternative<LineEntity>(entity) || std::holds_alternative<FaceEntity>(entity);
}

// Groups of linework, and the number of each by what its entities have in common.
class Groups {
 public:
  Group& Of(const DrawingEntity& entity) {
    const EntityProperties& properties = std::visit(
        [](const EntityProperties& all) -> const EntityProperties& { return all; }, entity);
    const auto [place, isNew] = numbers_.try_emplace(keyOf(properties), groups_.size());
    if (isNew) {
      groups_.push_back({properties, {}});
    }
    return groups_[place->second];
  }

  std::vector<Group> Take() { return std::move(groups_); }

 private:
  std::vector<Group> groups_;
  std::map<decltype(keyOf({})), std::size_t> numbers_;
};

// Takes the linework out of `entities`.
std::vector<Group> takeGroups(std::vector<DrawingEntity>& entities, Summary& summary) {
  Groups groups;
  for (const DrawingEntity& entity : entities) {
    if (isLinework(entity)) {
      groups.Of(entity).count += countEnds(entity);
      ++summary.piecesBefore;
    }
  }
  std::vector<DrawingEntity> others;
  for (DrawingEntity& entity : entities) {
    if (!isLinework(entity)) {
      others.push_back(std::move(entity));
      continue;
    }
    Group& group = groups.Of(entity);
    group.ends.reserve(group.count);
    appendSegments(group.ends, entity);
    // What is in the group is not needed twice.
    entity = InsertEntity{};
  }
  entities = std::move(others);
  return groups.Take();
}

void appendPaths(std::vector<DrawingEntity>& entities, const EntityProperties& properties,
                 const linework::Paths& paths, double simplifyTolerance, Summary& summary) {
  for (std::size_t i = 0; i < paths.size(); ++i) {
    PolylineEntity polyline{properties, paths.closed[i] != 0, {}};
    if (simplifyTolerance > 0.0) {
      polyline.vertices = linework::simplify(paths[i], polyline.closed, simplifyTolerance);
    } else {
      polyline.vertices.assign(paths[i].begin(), paths[i].end());
    }
    ++summary.polylinesAfter;
    summary.closedPolylines += polyline.closed ? 1 : 0;
    entities.emplace_back(std::move(polyline));
  }
}

// For coordinates beyond the reach of joining: each segment that has a length by itself.
void appendSegmentsAlone(std::vector<DrawingEntity>& entities, const Group& group,
                         Summary& summary) {
  for (std::size_t i = 0; i < group.ends.size(); i += 2) {
    const PlanPoint from = group.ends[i];
    const PlanPoint to = group.ends[i + 1];
    if (from.x != to.x || from.y != to.y) {
      entities.emplace_back(PolylineEntity{group.properties, false, {from, to}});
      ++summary.polylinesAfter;
    }
  }
}

}  // namespace

void joinEntities(std::vector<DrawingEntity>& entities, double simplifyTolerance,
                  Summary& summary) {
  std::vector<Group> groups = takeGroups(entities, summary);
  std::vector<DrawingEntity> joined;
  for (Group& group : groups) {
    const double tolerance = linework::joinTolerance(group.ends);
    if (tolerance == 0.0) {
      appendSegmentsAlone(joined, group, summary);
      continue;
    }
    const linework::Paths paths = linework::joinSegments(std::move(group.ends), tolerance);
    appendPaths(joined, group.properties, paths, simplifyTolerance, summary);
  }
  joined.insert(joined.end(), std::make_move_iterator(entities.begin()),
                std::make_move_iterator(entities.end()));
  entities = std::move(joined);
}

}  // namespace dxf2d::finish
