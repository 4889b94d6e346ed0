#include "ktscene/kt_scene_check.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "ktscene/content_hash.h"
#include "ktscene/kt_v.h"
#include "ktscene/set_check.h"

namespace {

using dxf2d::ContentHash;

// Radians. From the first on a placement is not a plan view; from the second on the geometry is
// drawn in world coordinates, and what lies between is drawn in one way and placed in the other.
constexpr double kPlacementTilt = 0.01;
constexpr double kPlainTilt = 0.03;

// What rounding makes of a rotation.
constexpr double kNoise = 1e-9;

bool isRotation(const KtMatrix& matrix) {
  const double* const m = matrix.Data();
  const double* const rows[] = {m, m + 4, m + 8};
  for (const double* a : rows) {
    for (const double* b : rows) {
      const double product = (a[0] * b[0] + a[1] * b[1]) + a[2] * b[2];
      if (!(std::abs(product - (a == b ? 1.0 : 0.0)) <= kNoise)) {
        return false;
      }
    }
  }
  return true;
}

double tiltOf(const KtMatrix& matrix) {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  matrix.GetRotateKoef(&x, &y, &z);
  return std::abs(x) + std::abs(y);
}

bool isAffine(const KtMatrix& matrix) {
  const double* m = matrix.Data();
  return std::all_of(m, m + 16, [](double value) { return std::isfinite(value); }) && m[3] == 0.0 &&
         m[7] == 0.0 && m[11] == 0.0 && m[15] == 1.0;
}

bool isLabelText(const std::u16string& text) {
  double number = 0.0;
  unsigned short align = 0;
  bool frame = false;
  unsigned flags = 0;
  std::vector<std::u16string> lines;
  return text.size() >= 2 &&
         KtV::ParseLabelString(text.substr(2), number, number, number, number, number, number,
                               number, align, frame, number, number, number, flags, lines);
}

class SceneCheck {
 public:
  std::vector<KtSceneFinding> Run(const KtScene& scene) {
    Push("/nodes", scene.nodes, nullptr, scene.nodes.size());
    while (!open_.empty()) {
      if (List& list = open_.back(); list.next != list.count) {
        Enter((*list.nodes)[list.next++]);
      } else {
        Leave();
      }
    }
    return std::move(findings_);
  }

 private:
  // The nodes below one node, or at the top of the scene.
  struct List {
    const char* key;
    const std::vector<KtSceneNode>* nodes;
    const KtSceneNode* owner;
    std::size_t next;
    std::size_t count;
    KtMatrix world;
    // Whether the owner or a node above it has an object's id.
    bool isPlaced;
    bool hasGeometryBelow;
    ContentHash content;
  };

  void Push(const char* key, const std::vector<KtSceneNode>& nodes, const KtSceneNode* owner,
            std::size_t count) {
    List list{key, &nodes, owner, 0, count, {}, false, false, {}};
    if (!open_.empty()) {
      list.world = open_.back().world;
      list.isPlaced = open_.back().isPlaced;
    }
    if (owner != nullptr) {
      list.world.Mult(owner->matrix);
      list.isPlaced = list.isPlaced || !owner->objectId.empty();
    }
    open_.push_back(list);
  }

  // The node that was entered last, with `part` of it.
  void Add(KtSeverity severity, const std::string& part, std::string problem, std::string remedy) {
    std::string pointer;
    for (const List& list : open_) {
      pointer += std::string(list.key) + "/" + std::to_string(list.next - 1);
    }
    findings_.push_back({severity, pointer + part, std::move(problem), std::move(remedy)});
  }
  void AddError(std::string problem, std::string remedy, const std::string& part = "") {
    Add(KtSeverity::kError, part, std::move(problem), std::move(remedy));
  }
  void AddWarning(std::string problem, std::string remedy, const std::string& part = "") {
    Add(KtSeverity::kWarning, part, std::move(problem), std::move(remedy));
  }

  void Enter(const KtSceneNode& node) {
    if (node.lod) {
      if (!node.geometry.empty() || !node.children.empty() || node.label) {
        AddError("is a level-of-detail group with content of its own, which is not drawn",
                 "put the content into its levels");
      }
      Push("/lod/levels", node.lod->levels, &node,
           std::min<std::size_t>(node.lod->levels.size(), 1));
      return;
    }
    CheckMatrix(node);
    CheckNames(node);
    CheckContent(node);
    Push("/children", node.children, &node, node.children.size());
  }

  void CheckMatrix(const KtSceneNode& node) {
    if (!isAffine(node.matrix)) {
      AddError("has a matrix that is not affine and finite",
               "make elements 3, 7 and 11 zero and element 15 one", "/matrix");
      return;
    }
    const bool isFrame = !node.realObjectId.empty() || !node.objectId.empty();
    if (isFrame && !isRotation(node.matrix)) {
      AddWarning("has a scale, shear or mirroring in its matrix, which placements do not carry",
                 "put it into the vertices or the matrix of a child without ids (KtDecompose)",
                 "/matrix");
    }
    KtMatrix world = open_.back().world;
    world.Mult(node.matrix);
    const double tilt = tiltOf(world);
    if (isFrame && tilt > kPlacementTilt && tilt <= kPlainTilt) {
      AddWarning(
          "is tilted by between 0.01 and 0.03 radians, and lies at the origin of the drawing",
          "remove the tilt, or put it into the vertices", "/matrix");
    }
  }

  void CheckNames(const KtSceneNode& node) {
    const bool hasContent = !node.geometry.empty() || node.label;
    if (hasContent && !open_.back().isPlaced && node.objectId.empty()) {
      AddError("is in no object, and nothing places it", "give it or a node above it an objectId");
    }
    if (!node.objectId.empty() && node.graphicName.empty() && node.children.empty() && hasContent) {
      AddError("is an object without a graphicName, and is not placed", "give it a graphicName");
    }
    if (!node.objectId.empty() && node.realObjectId.empty() && !node.geometry.empty() &&
        !node.matrix.IsIdentity()) {
      AddWarning("has an objectId but no realObjectId, and is moved twice", "give it both ids");
    }
    if (!node.realObjectId.empty() && node.objectId.empty() && !node.graphicName.empty()) {
      AddWarning(
          "has a realObjectId but no objectId, and is missing where it is drawn as an instance",
          "give it both ids, or neither");
    }
    for (const List& list : open_) {
      if (list.owner != nullptr && !node.graphicName.empty() &&
          list.owner->graphicName == node.graphicName) {
        AddError("has the graphicName of a node above it", "give it another");
        break;
      }
    }
  }

  void CheckContent(const KtSceneNode& node) {
    for (std::size_t i = 0; i < node.geometry.size(); ++i) {
      part_ = "/geometry/" + std::to_string(i);
      std::visit([this](const auto& item) { CheckItem(item); }, node.geometry[i]);
    }
    if (node.geometry.size() + (node.label ? 1U : 0U) > 1) {
      AddError("has several sets, or a set and a label, of which readers show one",
               "use a node for each, or join the sets");
    }
    if (node.label && !isLabelText(node.label->text)) {
      AddError("has a text that does not follow the syntax of labels, and is not drawn",
               "make it with KtMakeLabel", "/label");
    }
    if (node.color && !std::ranges::all_of(
                          *node.color, [](double value) { return value >= 0.0 && value <= 1.0; })) {
      AddWarning("has a color component outside 0 to 1", "divide components by their maximum",
                 "/color");
    }
  }

  template <typename Set>
  void CheckItem(const std::shared_ptr<const Set>& set) {
    if (set == nullptr) {
      AddError("is null", "leave the item out", part_);
    } else if (checked_.insert(set.get()).second) {
      CheckSet(*set);
    }
  }
  void CheckItem(const KtBox& box) {
    if (!(box.a > 0.0 && box.b > 0.0 && box.c > 0.0)) {
      AddError("is a box without extent", "make its sizes larger than 0", part_);
    }
  }
  void CheckItem(const KtCylinder& cylinder) {
    if (!(cylinder.radius > 0.0 && cylinder.height > 0.0)) {
      AddError("is a cylinder without extent", "make its sizes larger than 0", part_);
    }
  }
  void CheckSet(const KtFaceSet& set) { CheckLists(set.coords, set.indices); }
  void CheckSet(const KtLineSet& set) { CheckLists(set.coords, set.indices); }
  template <typename Borrowed>
  void CheckSet(const Borrowed& borrowed) {
    CheckSet(KtCopyLists(borrowed));
  }
  void CheckLists(const std::vector<double>& coords, const std::vector<int>& indices) {
    for (dxf2d::SetFault& fault : dxf2d::faultsOfSet(coords, indices)) {
      Add(fault.isError ? KtSeverity::kError : KtSeverity::kWarning, part_,
          std::move(fault.problem), std::move(fault.remedy));
    }
  }

  // All that the node shows, its children's places included.
  static void AddContent(ContentHash& hash, const KtSceneNode& node) {
    for (const KtSceneGeometry& item : node.geometry) {
      hash.Add(item.index());
      std::visit([&hash](const auto& content) { AddItem(hash, content); }, item);
    }
    if (node.label) {
      hash.AddText(node.label->text);
    }
  }
  static void AddSet(ContentHash& hash, const KtFaceSet& set) {
    hash.AddList(set.coords);
    hash.AddList(set.indices);
  }
  static void AddSet(ContentHash& hash, const KtLineSet& set) {
    hash.AddList(set.coords);
    hash.AddList(set.indices);
  }
  template <typename Borrowed>
  static void AddSet(ContentHash& hash, const Borrowed& borrowed) {
    AddSet(hash, KtCopyLists(borrowed));
  }
  template <typename Set>
  static void AddItem(ContentHash& hash, const std::shared_ptr<const Set>& set) {
    if (set != nullptr) {
      AddSet(hash, *set);
    }
  }
  static void AddItem(ContentHash& hash, const KtBox& box) {
    hash.Add(box.a);
    hash.Add(box.b);
    hash.Add(box.c);
  }
  static void AddItem(ContentHash& hash, const KtCylinder& cylinder) {
    hash.Add(cylinder.radius);
    hash.Add(cylinder.height);
  }

  void Leave() {
    const List list = open_.back();
    open_.pop_back();
    if (list.owner == nullptr || open_.empty()) {
      return;
    }
    const KtSceneNode& node = *list.owner;
    if (!node.lod && !node.geometry.empty() && list.hasGeometryBelow) {
      AddError("has geometry of its own and children with geometry, of which readers show one",
               "move its geometry to a child");
    }
    ContentHash content = list.content;
    AddContent(content, node);
    CheckSharedName(node, content.Value());
    List& outer = open_.back();
    outer.hasGeometryBelow =
        outer.hasGeometryBelow || list.hasGeometryBelow || !node.geometry.empty();
    for (int i = 0; i < 16; ++i) {
      outer.content.Add(node.matrix.Data()[i]);
    }
    outer.content.Add(content.Value());
  }

  void CheckSharedName(const KtSceneNode& node, std::uint64_t content) {
    if (node.graphicName.empty()) {
      return;
    }
    const auto [known, isNew] = contentOf_.emplace(node.graphicName, content);
    if (!isNew && known->second != content) {
      AddError("has the graphicName of a node that shows something else, and may be drawn as that",
               "give nodes one name only if they show the same");
    }
  }

  std::vector<List> open_;
  std::vector<KtSceneFinding> findings_;
  // Of the node that was entered last.
  std::string part_;
  // Sets that several nodes share are checked once.
  std::unordered_set<const void*> checked_;
  std::unordered_map<std::u16string, std::uint64_t> contentOf_;
};

}  // namespace

std::vector<KtSceneFinding> KtCheckScene(const KtScene& scene) { return SceneCheck().Run(scene); }
