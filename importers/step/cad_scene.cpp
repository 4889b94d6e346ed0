#include "importers/step/cad_scene.h"

#include <BRepBndLib.hxx>
#include <Bnd_Box.hxx>
#include <NCollection_DataMap.hxx>
#include <Quantity_Color.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <cmath>
#include <map>
#include <numbers>
#include <string>
#include <utility>

#include "importers/step/shape_mesh.h"

namespace dxf2d::step {
namespace {

// Maps a face that replaces another to the face that it replaces.
using FaceMap = NCollection_DataMap<TopoDS_Shape, TopoDS_Shape, TopTools_ShapeMapHasher>;

glb::Color colorOf(const Quantity_Color& color) {
  return {static_cast<float>(color.Red()), static_cast<float>(color.Green()),
          static_cast<float>(color.Blue())};
}

std::string nameOf(const TDF_Label& label) {
  Handle(TDataStd_Name) attribute;
  if (!label.FindAttribute(TDataStd_Name::GetID(), attribute)) {
    return {};
  }
  const TCollection_ExtendedString& name = attribute->Get();
  std::string text(static_cast<std::size_t>(name.LengthOfCString()), '\0');
  Standard_PCharacter bytes = text.data();
  name.ToUTF8CString(bytes);
  return text;
}

// Whether the name of an occurrence was generated and tells people nothing: the reader's for
// references ("=>[0:1:1:2]"), or the number of the occurrence in the file ("NAUO12").
bool isMadeUp(const std::string& name) {
  const auto isNumbered = [&](std::string_view prefix) {
    return name.starts_with(prefix) &&
           name.find_first_not_of("0123456789", prefix.size()) == std::string::npos;
  };
  return name.empty() || name.starts_with("=>[") || isNumbered("NAUO");
}

// The placement of an occurrence, with distances in a unit of `unit` millimeters.
std::optional<std::array<double, 16>> matrixOf(const TopLoc_Location& location, double unit) {
  if (location.IsIdentity()) {
    return std::nullopt;
  }
  const gp_Trsf place = location.Transformation();
  std::array<double, 16> matrix{};
  for (std::size_t column = 0; column < 4; ++column) {
    for (std::size_t row = 0; row < 3; ++row) {
      matrix[4 * column + row] =
          place.Value(static_cast<int>(row) + 1, static_cast<int>(column) + 1) /
          (column < 3 ? 1.0 : unit);
    }
  }
  matrix[15] = 1.0;
  return matrix;
}

class SceneBuilder {
 public:
  SceneBuilder(const CadFile& file, const DivisionOptions& options)
      : shapes_(XCAFDoc_DocumentTool::ShapeTool(file.document->Main())),
        colors_(XCAFDoc_DocumentTool::ColorTool(file.document->Main())),
        hasLooseFaces_(file.hasLooseFaces) {
    scene_.unit = file.unit;
    shapes_->GetFreeShapes(roots_);
    const double unit = file.millimetersPerUnit;
    division_ = {options.distance ? *options.distance * unit : Size() / 2000.0,
                 options.angle * std::numbers::pi / 180.0, unit};
  }

  glb::Scene Run() {
    for (const TDF_Label& root : roots_) {
      scene_.roots.push_back(Add(root, std::nullopt));
    }
    if (lostFaces_ != 0) {
      scene_.notes.push_back(std::to_string(lostFaces_) + (lostFaces_ == 1 ? " face" : " faces") +
                             " that could not be divided into triangles left out");
    }
    if (scene_.meshes.empty()) {
      throw ReadError("it has no shapes");
    }
    return std::move(scene_);
  }

 private:
  // The diagonal of the whole model.
  double Size() const {
    Bnd_Box box;
    for (const TDF_Label& root : roots_) {
      BRepBndLib::Add(XCAFDoc_ShapeTool::GetShape(root), box);
    }
    return box.IsVoid() ? 1.0 : std::sqrt(box.SquareExtent());
  }

  std::optional<glb::Color> ColorOf(const TDF_Label& label) const {
    Quantity_Color color;
    for (const XCAFDoc_ColorType type : {XCAFDoc_ColorSurf, XCAFDoc_ColorGen}) {
      if (colors_->GetColor(label, type, color)) {
        return colorOf(color);
      }
    }
    return std::nullopt;
  }

  // Adds what a label stands for and all below it; `inherited` is the color of the assembly.
  // Returns the node.
  std::size_t Add(const TDF_Label& label, const std::optional<glb::Color>& inherited) {
    TDF_Label part = label;
    XCAFDoc_ShapeTool::GetReferredShape(label, part);
    // The color of an occurrence overrides that of its part, and both override that of the
    // assembly.
    std::optional<glb::Color> color = ColorOf(label);
    if (!color) {
      color = ColorOf(part);
    }
    if (!color) {
      color = inherited;
    }
    glb::Node node;
    const std::string own = nameOf(label);
    node.name = isMadeUp(own) ? nameOf(part) : own;
    if (part != label) {
      node.matrix = matrixOf(XCAFDoc_ShapeTool::GetLocation(label), division_.unit);
    }
    const std::size_t number = scene_.nodes.size();
    scene_.nodes.emplace_back();
    if (XCAFDoc_ShapeTool::IsAssembly(part)) {
      TDF_LabelSequence components;
      XCAFDoc_ShapeTool::GetComponents(part, components);
      for (const TDF_Label& component : components) {
        node.children.push_back(Add(component, color));
      }
    } else {
      node.mesh = MeshOf(part, color);
    }
    scene_.nodes[number] = std::move(node);
    return number;
  }

  // The mesh of a part in a color, which is made once. None when it has no faces and no edges.
  std::optional<std::size_t> MeshOf(const TDF_Label& part, const std::optional<glb::Color>& color) {
    const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(part);
    const auto [known, isNew] = meshes_.try_emplace({shape.TShape().get(), color});
    if (!isNew) {
      return known->second;
    }
    FaceMap originals;
    const TopoDS_Shape whole = hasLooseFaces_
                                   ? sewn(shape, division_.distance / 10.0,
                                          [&](const TopoDS_Face& face, const TopoDS_Face& other) {
                                            originals.Bind(other, face);
                                          })
                                   : shape;
    const auto colorOfFace = [&](const TopoDS_Face& face) {
      const TopoDS_Shape* const original = originals.Seek(face);
      TDF_Label label;
      return shapes_->FindSubShape(part, original == nullptr ? face : *original, label)
                 ? ColorOf(label)
                 : std::nullopt;
    };
    ShapeMesh mesh = meshShape(whole, division_, colorOfFace, color);
    lostFaces_ += mesh.lostFaces;
    if (!mesh.mesh.empty()) {
      known->second = scene_.meshes.size();
      scene_.meshes.push_back(std::move(mesh.mesh));
    }
    return known->second;
  }

  Handle(XCAFDoc_ShapeTool) shapes_;
  Handle(XCAFDoc_ColorTool) colors_;
  TDF_LabelSequence roots_;
  Division division_{};
  bool hasLooseFaces_;
  glb::Scene scene_;
  std::map<std::pair<const void*, std::optional<glb::Color>>, std::optional<std::size_t>> meshes_;
  std::size_t lostFaces_ = 0;
};

}  // namespace

glb::Scene sceneOf(const CadFile& file, const DivisionOptions& options) {
  return SceneBuilder(file, options).Run();
}

}  // namespace dxf2d::step
