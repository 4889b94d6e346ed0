// A host that calls anything in any order with any arguments, and then exports as hosts do: that
// drawing must be the one that a fresh process makes.
#include <array>
#include <deque>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "fuzz/geometry_input.h"
#include "fuzz/random_host/host_content.h"
#include "fuzz/random_host/memory_file.h"
#include "fuzz/random_host/reference_scene.h"
#include "fuzz/require.h"
#include "geometry/callbacks.h"
#include "ktscene/kt_traverser.h"
#include "ktscene/zu_message.h"
#include "labels/label_callback.h"
#include "platform/cfile_exception.h"
#include "platform/code_page.h"
#include "plugin/entry.h"
#include "session/callbacks.h"
#include "shapes/box_writer.h"
#include "shapes/cylinder_writer.h"

namespace dxf2d {

namespace {

// Reads what is shown, and shows nothing.
void readErrorBox(void* /*owner*/, const char16_t* title, const char16_t* text, int /*style*/) {
  require(lstrlenW(title) > 0 && lstrlenW(text) > 0, "an error box has a title and a text");
}

std::string exportReference() {
  static const MemoryFile file;
  static KtScene scene = referenceScene();
  KtTraverser traverser;
  require(InitializeTraverser(&traverser, nullptr), "the plug-in takes every host");
  require(traverser.Walk(scene, file.Path()), "a scene is exported");
  return file.Bytes();
}

std::string& freshDrawing() {
  static std::string drawing;
  return drawing;
}

// The calls of one input.
class RandomHost {
 public:
  RandomHost(const std::uint8_t* bytes, std::size_t size) : data_(bytes, size) {}

  void CallUntilTheInputEnds() {
    while (data_.remaining_bytes() > 0) {
      try {
        (this->*kCalls[data_.ConsumeIntegralInRange<std::size_t>(0, kCalls.size() - 1)])();
      } catch (const CFileException&) {
        // A write that failed, or one without an open file.
      } catch (const std::bad_alloc&) {
      } catch (const std::out_of_range& error) {
        // A cylinder's side outline ends so.
        require(std::string_view(error.what()) == "invalid vector<T> subscript",
                "no index is out of range but the one that is meant to be");
      }
    }
  }

 private:
  using Call = void (RandomHost::*)();

  void Register() {
    KtTraverser traverser;
    require(InitializeTraverser(data_.ConsumeBool() ? &traverser : nullptr, &traverser),
            "the plug-in takes every host");
  }

  void OpenFile() {
    constexpr std::array kPaths = {u"/dev/full", u"/dev/null", u"/", u"", u"/dev/null/drawing.dxf"};
    const auto kind = data_.ConsumeIntegralInRange<std::size_t>(0, 2 * kPaths.size());
    if (kind < kPaths.size()) {
      DXF2dOpenFileForModel(kPaths[kind]);
    } else if (kind < 2 * kPaths.size()) {
      DXF2dOpenFileForModel(file_.Path());
    } else {
      // Below what is no folder, so that no text names a file that there is or could be.
      DXF2dOpenFileForModel(u"/dev/null/" + takeText(data_));
    }
  }
  void CloseFile() { DXF2dCloseFileForModel(); }

  // Null now and then; a node lives to the input's end, as it does in a host's scene.
  KtGraphicAttribute* TakeAttribute() {
    if (data_.ConsumeIntegralInRange(0, 7) == 7) {
      return nullptr;
    }
    KtSceneNode& node = nodes_.emplace_back(takeNode(data_));
    return &attributes_.emplace_back(node);
  }
  void OpenNode() { DXF2dOpenNode(TakeAttribute()); }
  void OpenNodesInOneAnother() {
    KtGraphicAttribute* attribute = TakeAttribute();
    const auto depth = data_.ConsumeIntegral<std::uint8_t>();
    for (int level = 0; level < depth; ++level) {
      DXF2dOpenNode(attribute);
    }
  }
  void CloseNode() { DXF2dCloseNode(); }
  void CloseNodes() {
    const auto count = data_.ConsumeIntegral<std::uint8_t>();
    for (int closed = 0; closed < count; ++closed) {
      DXF2dCloseNode();
    }
  }
  void Reuse() { DXF2DReuseCallback(TakeAttribute()); }

  void OpenLod() {
    const std::vector<double> ranges = takeSizes(data_);
    DXF2dOpenLODNode(ranges, takeReal(data_));
  }
  void CloseLod() { DXF2dCloseLODNode(); }

  // Three doubles, or null.
  const double* TakeTriple(std::array<double, 3>& triple) {
    if (data_.ConsumeIntegralInRange(0, 7) == 7) {
      return nullptr;
    }
    for (double& value : triple) {
      value = takeReal(data_);
    }
    return triple.data();
  }
  void BoundingBox() {
    std::array<double, 3> min;
    std::array<double, 3> max;
    const double* low = TakeTriple(min);
    const double* high = TakeTriple(max);
    DXF2dBBox(low, high, takeReal(data_));
  }
  void Material() {
    std::array<double, 3> color;
    const double* diffuse = TakeTriple(color);
    DXF2dMaterial(nullptr, diffuse, diffuse, nullptr, diffuse, nullptr);
  }
  void Matrix() {
    const KtMatrix matrix = takeMatrix(data_);
    DXF2dMatrix(data_.ConsumeIntegralInRange(0, 7) == 7 ? nullptr : matrix.Data());
  }

  static constexpr int kMostPoints = 40;
  static constexpr int kMostEntries = 200;

  void FaceGeometry() {
    static const char opaque = '\0';
    const auto* texture = reinterpret_cast<const Texture*>(&opaque);
    const std::vector<double> coords = takeCoords(data_, kMostPoints);
    const std::vector<int> indices = takeIndices(data_, coords.size() / 3, kMostEntries);
    const std::vector<double> normals = takeCoords(data_, 2);
    const bool flag = data_.ConsumeBool();
    DXF2dFaceGeometry(coords, indices, normals, indices, normals, indices, flag, !flag, flag, flag,
                      flag ? texture : nullptr);
  }
  void FaceSet() {
    const std::vector<double> coords = takeCoords(data_, kMostPoints);
    const std::vector<int> indices = takeIndices(data_, coords.size() / 3, kMostEntries);
    const bool reverse = data_.ConsumeBool();
    faceSetCallback(coords, indices, reverse, data_.ConsumeBool());
  }
  void LineSet() {
    const std::vector<double> coords = takeCoords(data_, kMostPoints);
    DXF2dLineGeometry(coords, takeIndices(data_, coords.size() / 3, kMostEntries));
  }
  void SpecialGeometry() {
    AnyShape shape(data_);
    const bool flag = data_.ConsumeBool();
    require(!DXF2dSpecialGeometry(flag ? &shape : nullptr, flag), "every shape is declined");
  }
  // No callback leads to the shape writers; a host that registers them is one to come.
  void Box() { writeBox(takeSizes(data_)); }
  void Cylinder() { writeCylinder(takeSizes(data_)); }

  void Label() {
    AnyLabel label(data_);
    const bool flag = data_.ConsumeBool();
    labelCallback(&label, flag, data_.ConsumeIntegral<int>());
  }
  void NoLabel() { require(!labelCallback(nullptr, true, 1), "there is no text without a label"); }
  void LabelText() {
    const std::u16string label = data_.ConsumeBool() ? takeLabel(data_) : takeText(data_);
    writeLabelText(label, data_.ConsumeIntegralInRange(-1, 257));
  }
  void CodePage() {
    constexpr std::array kPages = {1250U, 1251U, 1252U, 1253U, 1254U, 1255U, 1256U, 1257U,
                                   1258U, 874U,  932U,  936U,  949U,  950U,  65001U};
    const auto kind = data_.ConsumeIntegralInRange<std::size_t>(0, kPages.size());
    SetThreadCodePage(kind < kPages.size() ? kPages[kind] : data_.ConsumeIntegral<unsigned>());
  }

  static constexpr std::array kCalls = {
      &RandomHost::OpenFile,     &RandomHost::OpenNode,        &RandomHost::CloseNode,
      &RandomHost::Reuse,        &RandomHost::FaceSet,         &RandomHost::LineSet,
      &RandomHost::FaceGeometry, &RandomHost::Label,           &RandomHost::LabelText,
      &RandomHost::Material,     &RandomHost::Matrix,          &RandomHost::CloseFile,
      &RandomHost::Box,          &RandomHost::Cylinder,        &RandomHost::OpenNodesInOneAnother,
      &RandomHost::CloseNodes,   &RandomHost::SpecialGeometry, &RandomHost::OpenLod,
      &RandomHost::CloseLod,     &RandomHost::BoundingBox,     &RandomHost::CodePage,
      &RandomHost::NoLabel,      &RandomHost::Register};

  FuzzedDataProvider data_;
  MemoryFile file_;
  std::deque<KtSceneNode> nodes_;
  std::deque<KtGraphicAttribute> attributes_;
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  ZuSetErrorBoxHandler(readErrorBox);
  freshDrawing() = exportReference();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  RandomHost host(bytes, size);
  host.CallUntilTheInputEnds();
  // The page is the host's to set, not the plug-in's to reset.
  SetThreadCodePage(1252);
  require(exportReference() == freshDrawing(), "an export draws what it does in a fresh process");
  return 0;
}

}  // namespace dxf2d
