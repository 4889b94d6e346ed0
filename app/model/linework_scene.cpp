#include "app/model/linework_scene.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>

#include "app/model/cut_sharing.h"
#include "app/model/dashes.h"
#include "app/model/linework.h"
#include "app/process/worker_program.h"
#include "ktscene/kt_run_code.h"
#include "mesh/weld.h"
#include "projection/scene.h"

namespace dxf2d {
namespace {

using projection::Index;
using projection::PlanPoint;
using projection::Polylines;

// All objects in one list of triangles, those that have the same lines once.
struct ObjectScene {
  projection::Scene scene;
  std::vector<ObjectGroup> groups;
  // By part: its group of objects, its look in the object, and its mesh in the model.
  std::vector<Index> objects;
  std::vector<Index> looks;
  std::vector<unsigned> meshes;
  // With the height of the cut in the drawing.
  LineworkOptions linework;
};

projection::Placement placementOf(const PlanPlacement& placement) {
  return {placement.shift[0], placement.shift[1], placement.shift[2], placement.cosine,
          placement.sine};
}

// Whether only a cut makes a difference between the objects of a block.
bool isSharing(const LineworkOptions& linework) {
  return linework.cut && linework.hidden == HiddenLines::kShow &&
         linework.outline == OutlineOf::kNothing;
}

// Several objects are drawn in the coordinates of their block, at their height.
PlanPlacement placementOf(const ObjectGroup& group, const PlanLayout& layout) {
  const PlanPlacement& placement = layout.objects[group.front()].placement;
  PlanPlacement own;
  own.shift[2] = placement.shift[2];
  return group.size() == 1 ? placement : own;
}

std::vector<ObjectGroup> groupsOf(const LineworkSource& source,
                                  const std::vector<mesh::PolygonMesh>& blocks,
                                  LineworkOptions& linework) {
  if (isSharing(linework)) {
    linework.cut->height = heightOfCut(*linework.cut, source.layout, blocks);
    linework.cut->isAbsolute = true;
    return groupByCut(source.layout, blocks, linework.cut->height);
  }
  std::vector<ObjectGroup> groups;
  for (std::size_t i = 0; i < source.objects.size(); ++i) {
    groups.push_back({i});
  }
  return groups;
}

ObjectScene makeObjectScene(const LineworkSource& source, BlockBuilder& builder,
                            LimitChecker& limits) {
  std::vector<mesh::PolygonMesh> blocks;
  blocks.reserve(source.layout.blocks.size());
  std::vector<double> deviations;
  std::vector<std::vector<mesh::DrawnEdge>> noise(source.layout.blocks.size());
  // An outline has no lines inside.
  const bool wantsNoise = source.linework.outline == OutlineOf::kNothing;
  for (const BlockPlan& plan : source.layout.blocks) {
    const std::size_t closedBefore = builder.Work().repair.tJunctionsClosed;
    blocks.push_back(builder.BuildMesh(source.objects[plan.firstObject].meshes, plan.residual,
                                       wantsNoise ? &noise[blocks.size()] : nullptr));
    // Corners that close T-junctions come from a neighbor, up to a weld distance off the plane.
    const bool isBent = builder.Work().repair.tJunctionsClosed != closedBefore;
    deviations.push_back(isBent ? mesh::kDefaultWeldShare : 0.0);
  }
  ObjectScene result;
  result.linework = source.linework;
  result.groups = groupsOf(source, blocks, result.linework);
  std::vector<projection::PlacedMesh> placed;
  for (std::size_t i = 0; i < result.groups.size(); ++i) {
    const ObjectGroup& group = result.groups[i];
    const std::size_t number = source.layout.objects[group.front()].block;
    const mesh::PolygonMesh& block = blocks[number];
    limits.AddVertices(block.points.size());
    placed.push_back({&block, placementOf(placementOf(group, source.layout)),
                      static_cast<Index>(result.objects.size()), deviations[number],
                      noise[number]});
    const std::vector<unsigned>& meshes = source.objects[group.front()].meshes;
    const mesh::Looks looks = builder.LooksOf(meshes);
    result.objects.insert(result.objects.end(), meshes.size(), static_cast<Index>(i));
    result.looks.insert(result.looks.end(), looks.ofPart.begin(), looks.ofPart.end());
    result.meshes.insert(result.meshes.end(), meshes.begin(), meshes.end());
  }
  result.scene = projection::assembleScene(placed, source.options.threading);
  return result;
}

// Counts the objects that have no geometry at all, as plans of single objects do.
void countEmpty(const LineworkSource& source, BlockBuilder& builder, PlanContent& content) {
  for (const ModelObject& object : source.objects) {
    const bool isEmpty = std::ranges::all_of(
        object.meshes, [&](unsigned mesh) { return builder.ContentOf(mesh).IsEmpty(); });
    content.emptyObjects += isEmpty ? 1 : 0;
  }
}

// Lines of one leaf.
class LineSetBuilder {
 public:
  void Add(std::span<const PlanPoint> line) {
    const bool isClosed = line.size() > 2 && line.front() == line.back();
    const auto first = static_cast<int>(set_->coords.size() / 3);
    const std::size_t count = line.size() - (isClosed ? 1 : 0);
    for (std::size_t i = 0; i < count; ++i) {
      // The sums keep -0 out of drawings.
      set_->coords.insert(set_->coords.end(), {line[i][0] + 0.0, line[i][1] + 0.0, 0.0});
      set_->indices.push_back(first + static_cast<int>(i));
    }
    if (isClosed) {
      set_->indices.push_back(first);
    }
    set_->indices.push_back(KtRunCode::kLineStrip);
  }
  std::shared_ptr<const KtLineSet> Take() { return std::exchange(set_, nullptr); }

 private:
  std::shared_ptr<KtLineSet> set_ = std::make_shared<KtLineSet>();
};

void addTo(PlanExtent& extent, std::span<const PlanPoint> line) {
  for (const PlanPoint& point : line) {
    extent.Add(point[0], point[1]);
  }
}

PlanExtent extentOf(const Polylines& lines) {
  PlanExtent extent;
  addTo(extent, lines.points);
  return extent;
}

PartKind partKindOf(LineKind kind) {
  switch (kind) {
    case LineKind::kCrease:
      return PartKind::kCrease;
    case LineKind::kCut:
      return PartKind::kCut;
    case LineKind::kHidden:
      return PartKind::kHidden;
    default:
      return PartKind::kBorder;
  }
}

// Makes the nodes of a plan from its lines, which are in order of their groups.
class NodeMaker {
 public:
  NodeMaker(const LineworkSource& source, const ObjectScene& objects, const Polylines& lines,
            BlockBuilder& builder, LimitChecker& limits)
      : source_(source),
        objects_(objects),
        lines_(lines),
        builder_(builder),
        limits_(limits),
        dashLength_(source.linework.dashLength.value_or(defaultDashLength(extentOf(lines)))) {}

  std::vector<ShownObject> Run(ObjectNames& names, PlanScene& plan) {
    std::vector<ShownObject> shown;
    plan.content.dashLength = source_.linework.keepsHiddenWhole ? dashLength_ : 0.0;
    while (next_ < lines_.Count()) {
      const Index number = GroupOf(next_);
      const ObjectGroup& group = objects_.groups[number];
      KtSceneNode node = StartNode(names.Unique(source_.objects[group.front()].name));
      const std::size_t first = next_;
      PlanExtent extent;
      NodeSource source = SourceOf(group.front());
      while (next_ < lines_.Count() && GroupOf(next_) == number) {
        AddLeaf(node, extent, source);
      }
      plan.content.parts += node.children.size();
      plan.content.objects += group.size();
      plan.content.instances += group.size() - 1;
      if (source_.options.wantsSources) {
        plan.sources.push_back(std::move(source));
      }
      if (group.size() > 1) {
        AddInstances(group, std::move(node), first, names, plan, shown);
        continue;
      }
      addTo(plan.content.extent, PointsOf(first, next_));
      plan.scene.nodes.push_back(std::move(node));
      if (!extent.IsEmpty()) {
        shown.push_back({group.front(), extent});
      }
    }
    return shown;
  }

  // The same for lines that are of no object in particular.
  void RunWhole(ObjectNames& names, PlanScene& plan) {
    if (lines_.Count() == 0) {
      return;
    }
    KtSceneNode node = StartNode(names.Unique("outline"));
    NodeSource source;
    source.object = {"outline", 1};
    AddLeaf(node, plan.content.extent, source);
    node.children.front().color = kDefaultPen;
    if (source_.options.wantsSources) {
      source.leaves = {PartSource{}};
      plan.sources.push_back(std::move(source));
    }
    plan.content.parts = 1;
    plan.content.objects = 1;
    plan.scene.nodes.push_back(std::move(node));
  }

 private:
  Index GroupOf(std::size_t line) const {
    return objects_.objects[partOfGroup(lines_.groups[line])];
  }

  // Without leaves; empty unless it is wanted.
  NodeSource SourceOf(std::size_t object) const {
    return source_.options.wantsSources ? source_.finder.SourceOf(*source_.objects[object].node)
                                        : NodeSource();
  }

  // Those of the lines from `first` to before `last`.
  std::span<const PlanPoint> PointsOf(std::size_t first, std::size_t last) const {
    return std::span(lines_.points)
        .subspan(lines_.starts[first], lines_.starts[last] - lines_.starts[first]);
  }

  // Adds the node of the first object, and one with the same leaves for each other object. The
  // lines from `first` on are those of the group.
  void AddInstances(const ObjectGroup& group, KtSceneNode node, std::size_t first,
                    ObjectNames& names, PlanScene& plan, std::vector<ShownObject>& shown) {
    const std::span<const PlanPoint> used = PointsOf(first, next_);
    const PlanPoints points(used.begin(), used.end());
    for (const std::size_t object : group) {
      KtSceneNode placed = StartNode(
          object == group.front() ? node.objectId : names.Unique(source_.objects[object].name));
      placed.graphicName = node.graphicName;
      PlanPlacement placement = source_.layout.objects[object].placement;
      placement.shift[2] = 0.0;
      placed.matrix = placement.Matrix();
      for (const KtSceneNode& leaf : node.children) {
        KtSceneNode& copy = placed.children.emplace_back();
        copy.color = leaf.color;
        copy.geometry = leaf.geometry;
      }
      plan.scene.nodes.push_back(std::move(placed));
      if (source_.options.wantsSources && object != group.front()) {
        plan.sources.push_back(SourceOf(object));
      }
      PlanExtent extent;
      addPlaced(points, placement, extent);
      plan.content.extent.Add(extent);
      shown.push_back({object, extent});
    }
  }

  static KtSceneNode StartNode(const std::u16string& name) {
    KtSceneNode node;
    node.objectId = name;
    node.realObjectId = name;
    node.graphicName = name;
    node.matrix = PlanPlacement().Matrix();
    return node;
  }

  // Adds a leaf with the lines of the next group. Widens `extent` by those that are visible.
  void AddLeaf(KtSceneNode& node, PlanExtent& extent, NodeSource& source) {
    const std::uint64_t group = lines_.groups[next_];
    const bool isHidden = kindOfGroup(group) == LineKind::kHidden;
    LineSetBuilder set;
    for (; next_ < lines_.Count() && lines_.groups[next_] == group; ++next_) {
      if (isHidden && source_.linework.keepsHiddenWhole) {
        set.Add(lines_.At(next_));
      } else if (isHidden) {
        AddDashes(lines_.At(next_), set);
      } else {
        set.Add(lines_.At(next_));
        addTo(extent, lines_.At(next_));
      }
    }
    KtSceneNode& leaf = node.children.emplace_back();
    const unsigned mesh = objects_.meshes[partOfGroup(group)];
    leaf.color = builder_.ColorOf(mesh);
    if (source_.options.wantsSources) {
      source.leaves.push_back(source_.finder.LeafOf(mesh, partKindOf(kindOfGroup(group))));
    }
    leaf.geometry.emplace_back(set.Take());
  }

  void AddDashes(std::span<const PlanPoint> line, LineSetBuilder& set) {
    // More than any limit, and less than what a number of vertices holds.
    constexpr double kMost = 1e12;
    limits_.AddVertices(
        static_cast<std::size_t>(std::min(2.0 * countDashes(line, dashLength_), kMost)));
    for (const PlanPoints& dash : dashesOf(line, dashLength_)) {
      set.Add(dash);
    }
  }

  const LineworkSource& source_;
  const ObjectScene& objects_;
  const Polylines& lines_;
  BlockBuilder& builder_;
  LimitChecker& limits_;
  double dashLength_;
  std::size_t next_ = 0;
};

}  // namespace

std::vector<ShownObject> addLinework(const LineworkSource& source, BlockBuilder& builder,
                                     LimitChecker& limits, ObjectNames& names, PlanScene& plan) {
  countEmpty(source, builder, plan.content);
  ObjectScene objects = makeObjectScene(source, builder, limits);
  const LineworkOptions& options = objects.linework;
  beginStage("visibility");
  const Linework linework =
      drawLinework(std::move(objects.scene), {objects.objects, objects.looks}, options,
                   source.options.creaseDegrees, source.options.threading);
  PlanContent& content = plan.content;
  content.meshWork = builder.Work();
  content.meshWork.creases = linework.creases;
  content.openEnds = linework.openEnds;
  content.openObjects = linework.openObjects;
  content.droppedPieces = linework.droppedPieces;
  content.unshared = objects.groups.size() - source.layout.blocks.size();
  NodeMaker maker(source, objects, linework.lines, builder, limits);
  if (options.outline == OutlineOf::kWholeView) {
    maker.RunWhole(names, plan);
    return {};
  }
  std::vector<ShownObject> shown = maker.Run(names, plan);
  content.unseenObjects = source.objects.size() - content.objects - content.emptyObjects;
  return shown;
}

}  // namespace dxf2d
