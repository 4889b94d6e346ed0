// A plug-in of OpenSceneGraph that writes scenes as plans in DXF: osgconv, osgviewer and every
// program that calls osgDB::writeNodeFile write house.plan, which is then a drawing in DXF. (The
// extension .dxf belongs to OpenSceneGraph's own plug-in, which writes the faces in 3D.)
//
// The option "plugin=PATH" draws with another plug-in: osgconv -O plugin=PATH house.osgt a.plan.
#include <ktscene/kt_decompose.h>
#include <ktscene/kt_output_file.h>
#include <ktscene/kt_run_code.h>
#include <ktscene/kt_traverser.h>
#include <platform/path_text.h>

#include <map>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/LOD>
#include <osg/Material>
#include <osg/NodeVisitor>
#include <osg/Switch>
#include <osg/Transform>
#include <osg/TriangleLinePointIndexFunctor>
#include <osgDB/FileNameUtils>
#include <osgDB/Registry>
#include <utility>

namespace {

// The corners of a geometry's triangles, and the ends of its lines, each a run of its own.
struct Corners {
  std::vector<int> triangles;
  std::vector<int> lines;
  void operator()(unsigned a, unsigned b, unsigned c) {
    triangles.insert(triangles.end(),
                     {static_cast<int>(a), static_cast<int>(b), static_cast<int>(c)});
  }
  void operator()(unsigned a, unsigned b) {
    lines.insert(lines.end(), {static_cast<int>(a), static_cast<int>(b), KtRunCode::kSegment});
  }
  // Points have no extent in a plan.
  void operator()(unsigned) {}
};

std::u16string numbered(const char16_t* text, std::size_t number) {
  const std::string digits = std::to_string(number);
  return text + std::u16string(digits.begin(), digits.end());
}

KtMatrix toKtMatrix(const osg::Matrixd& matrix) {
  // Both are for row vectors.
  KtMatrix result;
  result.Init(matrix.ptr());
  return result;
}

// Makes an object of each place at which a geometry with triangles or lines stands.
class SceneBuilder : public osg::NodeVisitor {
 public:
  // Takes of groups what is shown: the children of switches that are on, the finest levels.
  explicit SceneBuilder(KtScene& scene) : NodeVisitor(TRAVERSE_ACTIVE_CHILDREN), scene_(scene) {}

  void apply(osg::LOD& levels) override {
    if (levels.getNumChildren() > 0) {
      levels.getChild(0)->accept(*this);
    }
  }

  void apply(osg::Geometry& geometry) override {
    const Mesh& mesh = MeshOf(geometry);
    if (!mesh.faces) {
      return;
    }
    const KtDecomposition parts = KtDecompose(toKtMatrix(osg::computeLocalToWorld(getNodePath())));
    KtSceneNode object;
    object.matrix = parts.placement;
    object.objectId = object.realObjectId = numbered(u"object-", scene_.nodes.size() + 1);
    object.color = Color();
    object.graphicName = LookOf(mesh, parts.residual, object.color);
    if (parts.residual.IsIdentity()) {
      object.geometry.emplace_back(mesh.faces);
    } else {
      KtSceneNode& part = object.children.emplace_back();
      part.graphicName = object.graphicName + u"-part";
      part.matrix = parts.residual;
      part.geometry.emplace_back(mesh.faces);
    }
    scene_.nodes.push_back(std::move(object));
  }

 private:
  struct Mesh {
    std::shared_ptr<const KtBorrowedFaces> faces;  // null: nothing to draw
    std::size_t number = 0;
  };
  using Color3 = std::optional<std::array<double, 3>>;
  using Look = std::tuple<std::size_t, std::vector<double>, Color3>;

  // A geometry that stands at several places is one mesh.
  const Mesh& MeshOf(osg::Geometry& geometry) {
    const auto [found, isNew] = meshes_.try_emplace(&geometry);
    if (isNew) {
      found->second.number = meshes_.size();
      found->second.faces = FacesOf(geometry);
    }
    return found->second;
  }

  // The vertices stay where they are. Null where there are neither triangles nor lines, or vertices
  // that are not floats or doubles of three.
  static std::shared_ptr<const KtBorrowedFaces> FacesOf(osg::Geometry& geometry) {
    osg::TriangleLinePointIndexFunctor<Corners> corners;
    geometry.accept(corners);
    const osg::Array* vertices = geometry.getVertexArray();
    const auto runs = std::make_shared<std::vector<int>>(RunsOf(std::move(corners)));
    if (runs->empty() || vertices == nullptr) {
      return nullptr;
    }
    auto faces = std::make_shared<KtBorrowedFaces>();
    if (vertices->getType() == osg::Array::Vec3ArrayType) {
      faces->lists.floats = static_cast<const float*>(vertices->getDataPointer());
    } else if (vertices->getType() == osg::Array::Vec3dArrayType) {
      faces->lists.doubles = static_cast<const double*>(vertices->getDataPointer());
    } else {
      OSG_WARN << "plan: " << geometry.getName()
               << ": vertices of this type are left out; convert them to Vec3" << std::endl;
      return nullptr;
    }
    faces->lists.coordCount = std::size_t{3} * vertices->getNumElements();
    faces->lists.indices = runs->data();
    faces->lists.indexCount = runs->size();
    faces->lists.owner = runs;
    // Nothing says whether it is.
    faces->closedSurface = false;
    return faces;
  }

  // All triangles are one run; lines may stand in a set of faces, too.
  static std::vector<int> RunsOf(Corners&& corners) {
    std::vector<int> runs = std::move(corners.triangles);
    if (!runs.empty()) {
      runs.push_back(KtRunCode::kTriangles);
    }
    runs.insert(runs.end(), corners.lines.begin(), corners.lines.end());
    return runs;
  }

  // Objects share a name, and thereby a block of the drawing, if they look the same but for their
  // placement.
  std::u16string LookOf(const Mesh& mesh, const KtMatrix& residual, const Color3& color) {
    const double* elements = residual.Data();
    const auto [found, isNew] = looks_.try_emplace(
        Look{mesh.number, std::vector<double>(elements, elements + 16), color}, looks_.size() + 1);
    return numbered(u"look-", found->second);
  }

  // The diffuse color of the innermost material above the geometry.
  Color3 Color() const {
    for (auto node = getNodePath().rbegin(); node != getNodePath().rend(); ++node) {
      const osg::StateSet* state = (*node)->getStateSet();
      const auto* material = state == nullptr
                                 ? nullptr
                                 : dynamic_cast<const osg::Material*>(
                                       state->getAttribute(osg::StateAttribute::MATERIAL));
      if (material != nullptr) {
        const osg::Vec4& diffuse = material->getDiffuse(osg::Material::FRONT);
        return std::array<double, 3>{diffuse.r(), diffuse.g(), diffuse.b()};
      }
    }
    return {};
  }

  KtScene& scene_;
  std::map<const osg::Geometry*, Mesh> meshes_;
  std::map<Look, std::size_t> looks_;
};

class ReaderWriterPlan : public osgDB::ReaderWriter {
 public:
  ReaderWriterPlan() {
    supportsExtension("plan", "plan drawing in DXF");
    supportsOption("plugin=PATH", "draw with the plug-in at PATH");
  }

  const char* className() const override { return "writer of plans"; }

  WriteResult writeNode(const osg::Node& node, const std::string& path,
                        const Options* options) const override {
    if (!acceptsExtension(osgDB::getLowerCaseFileExtension(path))) {
      return WriteResult::FILE_NOT_HANDLED;
    }
    try {
      const std::string named = options == nullptr ? "" : options->getOptionString();
      KtTraverser traverser;
      traverser.Load(named.starts_with("plugin=") ? named.substr(7) : PLAN_PLUGIN);
      KtScene scene;
      SceneBuilder builder(scene);
      // Visitors take nodes that may change; this one changes none.
      const_cast<osg::Node&>(node).accept(builder);
      if (scene.nodes.empty()) {
        return path + ": the scene has neither triangles nor lines to draw";
      }
      KtOutputFile drawing(path);
      if (!traverser.Walk(scene, pathFromBytes(drawing.Path()))) {
        return WriteResult::ERROR_IN_WRITING_FILE;
      }
      drawing.Commit();
      return WriteResult::FILE_SAVED;
    } catch (const std::exception& error) {
      return std::string(error.what());
    }
  }
};

}  // namespace

REGISTER_OSGPLUGIN(plan, ReaderWriterPlan)
