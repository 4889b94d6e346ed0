// Exports that run out of memory, at every allocation that they make.
#include <gtest/gtest.h>

#include <clocale>

#include "dxf/dot_locale.h"
#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "ktscene/zu_message.h"
#include "shapes/box_writer.h"
#include "tests/faults/allocation_sweep.h"
#include "tests/faults/grid.h"
#include "tests/platform/numeric_locale.h"
#include "tests/support/code_page_setting.h"
#include "tests/support/drawing_session.h"

namespace dxf2d {

namespace {

class AllocationFaults : public testing::TestWithParam<FailingNews::Kind> {};

KtTraverser pluginTraverser() {
  KtTraverser traverser;
  InitializeTraverser(&traverser, nullptr);
  return traverser;
}

// A walk over `scene` into one file, faulted, and again into the same file.
struct SweptExport {
  explicit SweptExport(KtScene given, unsigned codePage = 1252)
      : scene(std::move(given)), page(codePage) {
    const CodePageSetting setting(page);
    EXPECT_TRUE(Export());
    expected = readFile(file.Path());
  }

  bool Export() { return traverser.Walk(scene, path); }

  SweptWork Work() {
    return {.faulted =
                [this] {
                  const CodePageSetting setting(page);
                  return Export();
                },
            .verify =
                [this](bool done) {
                  if (done) {
                    EXPECT_EQ(readFile(file.Path()), expected) << "a drawing that was called done";
                  }
                  const CodePageSetting setting(page);
                  EXPECT_TRUE(Export());
                  EXPECT_EQ(readFile(file.Path()), expected) << "the next drawing";
                }};
  }

  KtScene scene;
  unsigned page;
  TempFile file;
  std::u16string path = file.WidePath();
  KtTraverser traverser = pluginTraverser();
  std::string expected;
};

// Error boxes that nobody sees and nothing keeps.
class SilentBoxes {
 public:
  SilentBoxes() : before_(ZuSetErrorBoxHandler(&SilentBoxes::Ignore)) {}
  ~SilentBoxes() { ZuSetErrorBoxHandler(before_); }
  SilentBoxes(const SilentBoxes&) = delete;
  SilentBoxes& operator=(const SilentBoxes&) = delete;

 private:
  static void Ignore(void*, const char16_t*, const char16_t*, int) {}

  ZuErrorBoxHandler before_;
};

KtScene richScene() { return ReadSceneFile(DXF2D_RICH_SCENE); }

// Nodes enough for several pages of the arena, under names that are found again.
KtScene manyNodes() {
  KtScene scene;
  for (int i = 0; i < 400; ++i) {
    KtSceneNode node;
    const std::string name = "object " + std::to_string(i % 40) + " in a long row of objects";
    node.graphicName.assign(name.begin(), name.end());
    node.objectId = node.realObjectId = node.graphicName;
    node.matrix.SetTranslation(i, 0, 0);
    node.geometry.emplace_back(KtBox{1, 2, 3});
    scene.nodes.push_back(std::move(node));
  }
  return scene;
}

KtScene gridScene(int side) {
  auto faces = std::make_shared<KtFaceSet>();
  faces->coords = gridCoords(side);
  faces->indices = gridIndices(side);
  KtScene scene;
  scene.nodes.emplace_back().geometry.emplace_back(std::move(faces));
  return scene;
}

}  // namespace

TEST_P(AllocationFaults, OfARichExportLeaveTheNextOneRight) {
  SweptExport swept(richScene());
  EXPECT_GT(sweepAllocations(swept.Work(), GetParam()), 100U);
}

TEST_P(AllocationFaults, OfTextsInSeveralBytesLeaveTheNextOnesRight) {
  SweptExport swept(richScene(), 932);
  sweepAllocations(swept.Work(), GetParam());
}

TEST_P(AllocationFaults, OfManyNodesLeaveTheNextOnesRight) {
  SweptExport swept(manyNodes());
  sampleAllocations(swept.Work(), GetParam(), 60, 1);
}

// Its arrays come in huge pages, and so through the aligned forms of operator new.
TEST_P(AllocationFaults, OfLargeArraysLeaveTheNextOnesRight) {
  SweptExport swept(gridScene(450));
  const std::uint64_t before = alignedAllocationsMade();
  EXPECT_TRUE(swept.Export());
  EXPECT_GT(alignedAllocationsMade(), before);
  sampleAllocations(swept.Work(), GetParam(), 12, 2);
}

TEST_P(AllocationFaults, OfAnOpenThatIsRefusedLeaveTheNextOneRight) {
  const SilentBoxes boxes;
  SweptExport swept(gridScene(2));
  const std::u16string missing = swept.path + u"/missing/drawing.dxf";
  SweptWork work = swept.Work();
  const auto verify = work.verify;
  bool opened = false;
  work.faulted = [&] {
    opened = swept.traverser.Walk(swept.scene, missing);
    return true;
  };
  work.verify = [&](bool /*done*/) {
    EXPECT_FALSE(opened);
    verify(false);
  };
  sweepAllocations(work, GetParam());
}

TEST_P(AllocationFaults, OfShapesAndFaceGeometryLeaveTheNextOnesRight) {
  const TempFile file;
  const std::u16string path = file.WidePath();
  HostNode host(u"g", u"A", u"A");
  const std::vector<double> sizes = {3, 2, 1};
  const std::vector<double> coords = gridCoords(2);
  const std::vector<int> indices = {0, 1, 2, -5, 1, 2, 4, 5, -3, 3, 4, 7, 6, -4};
  const auto draw = [&] {
    if (!DXF2dOpenFileForModel(path)) {
      return false;
    }
    DXF2dOpenNode(host.Attribute());
    const bool drawn = writeBox(sizes) && DXF2dFaceGeometry(coords, indices, {}, {}, {}, {}, false,
                                                            true, false, false, nullptr);
    DXF2dCloseNode();
    return DXF2dCloseFileForModel() && drawn;
  };
  ASSERT_TRUE(draw());
  const std::string expected = readFile(file.Path());
  const auto verify = [&](bool done) {
    if (done) {
      EXPECT_EQ(readFile(file.Path()), expected);
    }
    EXPECT_TRUE(draw());
    EXPECT_EQ(readFile(file.Path()), expected);
  };
  sweepAllocations({draw, verify}, GetParam());
}

TEST_P(AllocationFaults, OfADotLocaleLeaveTheHostItsLocale) {
  const NumericLocale locale(kCommaLocales);
  if (!locale.Found()) {
    GTEST_SKIP() << "neither de_DE.UTF-8 nor fr_FR.UTF-8 is installed";
  }
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  const auto guard = [] {
    const DotLocale dot;
    return true;
  };
  const auto verify = [&](bool /*done*/) {
    EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), before);
    EXPECT_TRUE(guard());
    EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), before);
  };
  sweepAllocations({guard, verify}, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Kinds, AllocationFaults, testing::ValuesIn(kBothKinds),
                         [](const auto& kind) {
                           return kind.param == FailingNews::Kind::kOnce ? "Once" : "FromThereOn";
                         });

}  // namespace dxf2d
