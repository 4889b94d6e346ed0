// --release, --layers, --join and what goes with them, as a user meets them.
#include <gtest/gtest.h>

#include "app/cli/exit_code.h"
#include "app/drawing/dxf_reader.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

// Two squares side by side of two materials, one above a triangle. OBJ has y up.
constexpr const char* kModel =
    "v 0 2 0\nv 4 2 0\nv 4 2 -4\nv 0 2 -4\nv 8 2 0\nv 8 2 -4\n"
    "o W\xC3\xA4nde\nusemtl red\nf 1 2 3 4\n"
    "o floor\nusemtl blue\nf 2 5 6 3\n"
    "v 1 0 -1\nv 2 0 -1\nv 2 0 -2\no below\nf 7 8 9\n";

constexpr const char* kScene = R"({"format": "ktscene", "version": 1, "nodes": [
  {"graphicName": "wall", "objectId": "wall-1", "realObjectId": "wall-1",
   "geometry": [{"box": [4, 2, 1]}]}]})";

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class FinishingOptions : public Dxf2d {
 protected:
  void SetUp() override {
    Dxf2d::SetUp();
    model_ = Write("model.obj", kModel);
  }
  // Exports the model with `options` and reads the drawing.
  Drawing Export(const std::string& options) {
    EXPECT_EQ(Run("export " + model_ + " -f -o " + Path("plan.dxf") + " " + options), kExitDone)
        << error_;
    return readDrawing(Path("plan.dxf"));
  }
  // The sentence that refuses `options`.
  std::string Refusal(const std::string& options) {
    EXPECT_EQ(Run("export " + model_ + " -o " + Path("never.dxf") + " " + options), kExitUsage);
    ExpectOneSentence();
    EXPECT_FALSE(std::filesystem::exists(Path("never.dxf")));
    return error_;
  }
  static std::vector<std::string> Layers(const Drawing& drawing) {
    std::vector<std::string> names;
    for (const Layer& layer : drawing.layers) {
      names.push_back(layer.name);
    }
    return names;
  }

  std::string model_;
};

using Names = std::vector<std::string>;

TEST_F(FinishingOptions, WithoutThemTheDrawingIsThePlugIns) {
  EXPECT_EQ(Export("").release, Release::kR10);
  EXPECT_FALSE(has(out_, "finished")) << out_;
  const std::string plain = Read(Path("plan.dxf"));
  Export("--release plain --join off --layers none");
  EXPECT_EQ(Read(Path("plan.dxf")), plain);
}

TEST_F(FinishingOptions, WhatAnOptionNeedsDecidesTheRelease) {
  for (const char* options : {"--layers kind", "--join on", "--explode", "--simplify 0.1",
                              "--units mm --source-units m", "--hidden dash"}) {
    EXPECT_EQ(Export(options).release, Release::kR2000) << options;
    EXPECT_TRUE(has(out_, "finished: r2000 (for --")) << out_;
  }
  EXPECT_EQ(Export("--true-color --explode").release, Release::kR2004);
  EXPECT_TRUE(has(out_, "finished: r2004 (for --true-color)")) << out_;
  EXPECT_EQ(Export("--release r2004").release, Release::kR2004);
  EXPECT_TRUE(has(out_, "finished: r2004, ")) << out_;
}

TEST_F(FinishingOptions, AReleaseThatCannotHoldAnOptionIsRefused) {
  EXPECT_TRUE(has(Refusal("--release plain --layers object"),
                  "--release plain cannot hold what --layers asks for"));
  EXPECT_TRUE(has(Refusal("--release plain --explode --join on"), "--join, --explode"));
  EXPECT_TRUE(has(Refusal("--release r2000 --true-color"), "use --release r2004"));
  EXPECT_TRUE(has(Refusal("--simplify 1 --join off"), "needs joined lines"));
}

TEST_F(FinishingOptions, ThePlainReleaseHoldsUnitsAndDashes) {
  EXPECT_EQ(Export("--release plain --units mm --source-units m --hidden dash").release,
            Release::kR10);
}

TEST_F(FinishingOptions, UnitsAreNamed) {
  EXPECT_EQ(Export("--units in --source-units m").units, 1);
  EXPECT_EQ(Export("--units mm --source-units m").units, 4);
  EXPECT_EQ(Export("--join on").units, 0);
}

TEST_F(FinishingOptions, LayersAreObjectsMaterialsAndKinds) {
  EXPECT_EQ(Layers(Export("--layers object")), (Names{"0", "Waende", "floor", "below"}));
  EXPECT_EQ(Layers(Export("--layers kind --labels name")), (Names{"0", "border", "label"}));
  EXPECT_EQ(Layers(Export("--layers kind --hidden dash")), (Names{"0", "border", "hidden"}));
  EXPECT_EQ(Layers(Export("--layers none --join on")), Names{"0"});
}

TEST_F(FinishingOptions, HiddenLinesAreWholeAndDashedByTheirType) {
  const Drawing drawing = Export("--hidden dash --dash 0.25");
  EXPECT_EQ(drawing.dashLength, 0.25);
  std::size_t dashed = 0;
  for (const DrawingBlock& block : drawing.blocks) {
    for (const DrawingEntity& entity : block.entities) {
      const auto* polyline = std::get_if<PolylineEntity>(&entity);
      if (polyline != nullptr && polyline->lineType == LineType::kDashed) {
        ++dashed;
        EXPECT_TRUE(polyline->closed);
        EXPECT_EQ(polyline->vertices.size(), 3U);
      }
    }
  }
  EXPECT_EQ(dashed, 1U);
}

TEST_F(FinishingOptions, ExplodedDrawingsHaveNoBlocks) {
  const Drawing drawing = Export("--explode");
  // But those of the format.
  EXPECT_TRUE(std::ranges::all_of(
      drawing.blocks, [](const DrawingBlock& block) { return block.name.starts_with('*'); }));
  ASSERT_FALSE(drawing.entities.empty());
  EXPECT_TRUE(std::ranges::all_of(drawing.entities, [](const DrawingEntity& entity) {
    return std::holds_alternative<PolylineEntity>(entity);
  }));
}

TEST_F(FinishingOptions, SceneFilesAreFinishedOnlyWhenAsked) {
  const std::string scene = Write("scene.json", kScene);
  ASSERT_EQ(Run("export " + scene + " -o " + Path("plain.dxf")), kExitDone) << error_;
  EXPECT_EQ(readDrawing(Path("plain.dxf")).release, Release::kR10);
  ASSERT_EQ(Run("export " + scene + " --layers object -o " + Path("layers.dxf")), kExitDone)
      << error_;
  EXPECT_EQ(out_ + error_, "");
  EXPECT_EQ(Layers(readDrawing(Path("layers.dxf"))), (Names{"0", "wall-1"}));
  EXPECT_EQ(Run("export " + scene + " --layers kind -o " + Path("kind.dxf")), kExitUsage);
  EXPECT_TRUE(has(error_, "names no materials and no kinds of lines")) << error_;
}

TEST_F(FinishingOptions, TheEndOfTheNameSaysWhatIsWritten) {
  for (const char* name : {"a.svg", "a.PDF", "a.Png"}) {
    ASSERT_EQ(Run("export " + model_ + " -o " + Path(name)), kExitDone) << error_;
  }
  EXPECT_TRUE(has(Read(Path("a.svg")), "<svg"));
  EXPECT_TRUE(Read(Path("a.PDF")).starts_with("%PDF"));
  EXPECT_TRUE(Read(Path("a.Png")).starts_with("\x89PNG"));
  ASSERT_EQ(Run("export " + model_ + " --format svg -o " + Path("other.txt")), kExitDone);
  EXPECT_TRUE(has(Read(Path("other.txt")), "<svg"));
  for (const char* name : {"plan", "plan.DXF"}) {
    ASSERT_EQ(Run("export " + model_ + " -o " + Path(name)), kExitDone) << error_;
    EXPECT_EQ(readDrawing(Path(name)).release, Release::kR10);
  }
}

TEST_F(FinishingOptions, AnUnknownEndIsRefused) {
  EXPECT_EQ(Run("export " + model_ + " -o " + Path("plan.dwg")), kExitUsage);
  ExpectOneSentence();
  EXPECT_TRUE(has(error_,
                  "the format '.dwg' is unknown; end the name in .dxf, .svg, .pdf, .png "
                  "or .html"))
      << error_;
}

TEST_F(FinishingOptions, StandardOutputIsADrawingUnlessToldOtherwise) {
  ASSERT_EQ(Run("export " + model_ + " -o - --format svg"), kExitDone) << error_;
  EXPECT_TRUE(has(out_, "<svg"));
  ASSERT_EQ(Run("export " + model_ + " -o -"), kExitDone) << error_;
  EXPECT_TRUE(has(out_, "AC1006"));
}

TEST_F(FinishingOptions, APreviewStandsBesideTheDrawing) {
  ASSERT_EQ(Run("export " + model_ + " -o " + Path("plan.dxf") + " --preview " + Path("plan.png")),
            kExitDone)
      << error_;
  EXPECT_TRUE(Read(Path("plan.png")).starts_with("\x89PNG"));
  EXPECT_EQ(readDrawing(Path("plan.dxf")).release, Release::kR10);
  EXPECT_TRUE(has(Refusal("--preview " + Path("plan.txt")), "the picture's format is unknown"));
}

TEST_F(FinishingOptions, SeveralModelsAreNamedByTheirFormat) {
  std::filesystem::create_directory(Path("out"));
  ASSERT_EQ(Run("export " + model_ + " --format svg -o " + Path("out/")), kExitDone) << error_;
  EXPECT_TRUE(std::filesystem::exists(Path("out/model.svg")));
}

}  // namespace

}  // namespace dxf2d
