// Prints how far the faces and lines of a model reach in plan, computed from its nodes and vertices
// alone; of the program under test it only asks which axis points up.
//
// usage: model_bounds MODEL auto|y|z AZIMUTH ELEVATION SCALE
//
// Three lines, in drawing units:
//   all MINX MAXX MINY MAXY        of the corners of faces and of the ends of lines
//   unshared MINX MAXX MINY MAXY   of those with an edge that fewer than three faces share
//   magnitude M                    the largest number that went into a coordinate
// Exit status 1, with a sentence, when the model cannot be read.
#include <assimp/config.h>
#include <assimp/importerdesc.h>
#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <assimp/Importer.hpp>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <numbers>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/model/up_axis.h"

using dxf2d::Affine;
using dxf2d::UpAxis;

namespace {

using Vector = std::array<double, 3>;

// Images of the axes and of the origin: p becomes x * axes[0] + y * axes[1] + z * axes[2] + origin.
struct Map {
  std::array<Vector, 3> axes{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  Vector origin{};
};

Vector directionThrough(const Map& map, const Vector& v) {
  Vector image;
  for (std::size_t i = 0; i < 3; ++i) {
    image[i] = v[0] * map.axes[0][i] + v[1] * map.axes[1][i] + v[2] * map.axes[2][i];
  }
  return image;
}

Vector pointThrough(const Map& map, const Vector& p) {
  Vector image = directionThrough(map, p);
  for (std::size_t i = 0; i < 3; ++i) {
    image[i] += map.origin[i];
  }
  return image;
}

Map innerThenOuter(const Map& inner, const Map& outer) {
  Map result;
  for (std::size_t i = 0; i < 3; ++i) {
    result.axes[i] = directionThrough(outer, inner.axes[i]);
  }
  result.origin = pointThrough(outer, inner.origin);
  return result;
}

Map mapOf(const aiMatrix4x4& m) {
  Map map;
  map.axes = {{{m.a1, m.b1, m.c1}, {m.a2, m.b2, m.c2}, {m.a3, m.b3, m.c3}}};
  map.origin = {m.a4, m.b4, m.c4};
  return map;
}

Map mapOf(const Affine& turn) {
  Map map;
  for (std::size_t i = 0; i < 9; ++i) {
    map.axes[i / 3][i % 3] = turn.linear[i];
  }
  return map;
}

Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// The sheet for a viewer who looks at the origin from there; angles in degrees.
Map sheetFor(double azimuth, double elevation, double scale) {
  const double a = azimuth * std::numbers::pi / 180.0;
  const double e = elevation * std::numbers::pi / 180.0;
  const Vector towardsViewer{std::cos(e) * std::sin(a), -std::cos(e) * std::cos(a), std::sin(e)};
  const Vector right{std::cos(a), std::sin(a), 0.0};
  const Vector up = cross(towardsViewer, right);
  Map sheet;
  for (std::size_t i = 0; i < 3; ++i) {
    sheet.axes[i] = {scale * right[i], scale * up[i], scale * towardsViewer[i]};
  }
  return sheet;
}

struct Bounds {
  double minX = std::numeric_limits<double>::infinity();
  double maxX = -std::numeric_limits<double>::infinity();
  double minY = std::numeric_limits<double>::infinity();
  double maxY = -std::numeric_limits<double>::infinity();

  void Add(const Vector& point) {
    minX = std::min(minX, point[0]);
    maxX = std::max(maxX, point[0]);
    minY = std::min(minY, point[1]);
    maxY = std::max(maxY, point[1]);
  }
  void Print(const char* name) const {
    std::printf("%s %.17g %.17g %.17g %.17g\n", name, minX, maxX, minY, maxY);
  }
};

// The places at which a mesh is drawn: corners of faces with two different vertices or more.
struct DrawnVertices {
  std::vector<unsigned> all;
  std::vector<unsigned> unshared;
};

bool isDrawn(const aiFace& face) {
  return std::any_of(face.mIndices, face.mIndices + face.mNumIndices,
                     [&face](unsigned index) { return index != face.mIndices[0]; });
}

// By vertex, the first that stands at the same place.
std::vector<unsigned> weldedVertices(const aiMesh& mesh) {
  std::map<std::array<float, 3>, unsigned> first;
  std::vector<unsigned> welded(mesh.mNumVertices);
  for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
    const aiVector3D& v = mesh.mVertices[i];
    welded[i] = first.try_emplace({v.x, v.y, v.z}, i).first->second;
  }
  return welded;
}

DrawnVertices drawnVertices(const aiMesh& mesh) {
  constexpr std::size_t kFewestThatHide = 3;
  const std::vector<unsigned> welded = weldedVertices(mesh);
  std::set<unsigned> all;
  std::set<unsigned> unshared;
  std::map<std::pair<unsigned, unsigned>, std::set<unsigned>> facesOfEdge;
  for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
    const aiFace& face = mesh.mFaces[f];
    if (!isDrawn(face)) {
      continue;
    }
    for (unsigned i = 0; i < face.mNumIndices; ++i) {
      const unsigned a = welded[face.mIndices[i]];
      const unsigned b = welded[face.mIndices[(i + 1) % face.mNumIndices]];
      all.insert(a);
      if (face.mNumIndices == 2) {
        unshared.insert(a);
      } else if (a != b) {
        facesOfEdge[std::minmax(a, b)].insert(f);
      }
    }
  }
  for (const auto& [edge, faces] : facesOfEdge) {
    if (faces.size() < kFewestThatHide) {
      unshared.insert({edge.first, edge.second});
    }
  }
  return {{all.begin(), all.end()}, {unshared.begin(), unshared.end()}};
}

class Extents {
 public:
  explicit Extents(const aiScene& model) : model_(model), drawn_(model.mNumMeshes) {
    for (unsigned i = 0; i < model.mNumMeshes; ++i) {
      drawn_[i] = drawnVertices(*model.mMeshes[i]);
    }
  }

  void AddNode(const aiNode& node, const Map& parent) {
    const Map map = innerThenOuter(mapOf(node.mTransformation), parent);
    for (unsigned i = 0; i < node.mNumMeshes; ++i) {
      AddMesh(node.mMeshes[i], map);
    }
    for (unsigned i = 0; i < node.mNumChildren; ++i) {
      if (node.mChildren[i] != nullptr) {
        AddNode(*node.mChildren[i], map);
      }
    }
  }

  void Print() const {
    all_.Print("all");
    unshared_.Print("unshared");
    std::printf("magnitude %.17g\n", magnitude_);
  }

 private:
  void AddMesh(unsigned mesh, const Map& map) {
    for (const unsigned vertex : drawn_[mesh].all) {
      all_.Add(Placed(mesh, vertex, map));
    }
    for (const unsigned vertex : drawn_[mesh].unshared) {
      unshared_.Add(Placed(mesh, vertex, map));
    }
  }

  Vector Placed(unsigned mesh, unsigned vertex, const Map& map) {
    const aiVector3D& v = model_.mMeshes[mesh]->mVertices[vertex];
    const Vector point{v.x, v.y, v.z};
    for (std::size_t i = 0; i < 3; ++i) {
      magnitude_ = std::max(magnitude_, std::abs(map.origin[i]));
      for (std::size_t j = 0; j < 3; ++j) {
        magnitude_ = std::max(magnitude_, std::abs(point[j] * map.axes[j][i]));
      }
    }
    return pointThrough(map, point);
  }

  const aiScene& model_;
  std::vector<DrawnVertices> drawn_;
  Bounds all_;
  Bounds unshared_;
  double magnitude_ = 0.0;
};

UpAxis axisNamed(const std::string& name) {
  if (name == "y") {
    return UpAxis::kY;
  }
  return name == "z" ? UpAxis::kZ : UpAxis::kAuto;
}

std::string readerOf(const Assimp::Importer& importer) {
  const int index = importer.GetPropertyInteger("importerIndex", -1);
  if (index < 0) {
    return {};
  }
  return importer.GetImporterInfo(static_cast<std::size_t>(index))->mName;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) {
    std::fprintf(stderr, "usage: model_bounds MODEL auto|y|z AZIMUTH ELEVATION SCALE\n");
    return 2;
  }
  const UpAxis up = axisNamed(argv[2]);
  Assimp::Importer importer;
  if (up != UpAxis::kAuto) {
    importer.SetPropertyBool(AI_CONFIG_IMPORT_COLLADA_IGNORE_UP_DIRECTION, true);
  }
  const aiScene* model = importer.ReadFile(argv[1], 0);
  if (model == nullptr) {
    std::fprintf(stderr, "model_bounds: %s\n", importer.GetErrorString());
    return 1;
  }
  const Map upright = mapOf(dxf2d::uprightTurn(*model, readerOf(importer), up));
  const Map sheet = sheetFor(std::atof(argv[3]), std::atof(argv[4]), std::atof(argv[5]));
  Extents extents(*model);
  extents.AddNode(*model->mRootNode, innerThenOuter(upright, sheet));
  extents.Print();
  std::fflush(stdout);
  // Not exit(): some of assimp's readers lose memory, which the leak checker would hold against
  // this program.
  std::_Exit(0);
}
