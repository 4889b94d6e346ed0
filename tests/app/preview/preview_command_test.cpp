#include "app/preview/preview_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "app/exit_code.h"
#include "tests/app/preview/drawing_text.h"
#include "tests/support/scratch_directory.h"

namespace {

struct Outcome {
  int code = 0;
  std::string said;
};

Outcome run(const PreviewOptions& options) {
  testing::internal::CaptureStderr();
  const int code = runPreview(options);
  return {code, testing::internal::GetCapturedStderr()};
}

// A directory that holds plan.dxf, and the options that make plan.png of it.
struct Fixture {
  ScratchDirectory directory;
  PreviewOptions options{directory / "plan.dxf", directory / "plan.png", 200, 1252,
                         Existing::kKeep};

  explicit Fixture(const std::string& entities) {
    ScratchDirectory::Fill(options.drawing, drawingText("", entities));
  }
  void ExpectNoPicture() const {
    EXPECT_FALSE(std::filesystem::exists(options.picture));
    EXPECT_EQ(directory.FileCount(), 1U);
  }
};

void expectContains(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << text;
}

TEST(PreviewCommand, MakesEveryKindOfPictureInSilence) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  for (const char* name : {"plan.png", "plan.svg", "plan.pdf"}) {
    fixture.options.picture = fixture.directory / name;
    const Outcome outcome = run(fixture.options);
    EXPECT_EQ(outcome.code, kExitDone);
    EXPECT_EQ(outcome.said, "");
    EXPECT_GT(std::filesystem::file_size(fixture.options.picture), 100U);
  }
}

TEST(PreviewCommand, UnknownEndOfNameIsUsage) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  fixture.options.picture = fixture.directory / "plan.jpg";
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitUsage);
  expectContains(outcome.said, "end it in .png, .svg or .pdf");
  fixture.ExpectNoPicture();
}

TEST(PreviewCommand, SizeAndCodePageOutOfRangeAreUsage) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  for (const int size : {-1, 0, 15, 10'001}) {
    fixture.options.size = size;
    EXPECT_EQ(run(fixture.options).code, kExitUsage) << size;
  }
  fixture.options.size = 200;
  fixture.options.codePage = 437;
  EXPECT_EQ(run(fixture.options).code, kExitUsage);
  fixture.ExpectNoPicture();
}

TEST(PreviewCommand, EmptyDrawingHoldsNothingToDraw) {
  const Fixture fixture("");
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitNothingToDraw);
  expectContains(outcome.said, "plan.dxf' holds nothing to draw");
  fixture.ExpectNoPicture();
}

TEST(PreviewCommand, MalformedDrawingIsNamedWithItsLine) {
  const Fixture fixture("  0\nLINE\n 10\nx\n");
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitInput);
  expectContains(outcome.said, "plan.dxf:");
  expectContains(outcome.said, "'x' in group 10");
  fixture.ExpectNoPicture();
}

TEST(PreviewCommand, MissingDrawingIsNamed) {
  Fixture fixture("");
  fixture.options.drawing = fixture.directory / "other.dxf";
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitInput);
  expectContains(outcome.said, "other.dxf': No such file or directory");
}

TEST(PreviewCommand, MissingDirectoryOfThePictureIsNamed) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  fixture.options.picture = fixture.directory / "out/plan.png";
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitOutputNotMade);
  expectContains(outcome.said, "does not exist; create it or choose another");
}

TEST(PreviewCommand, OldPictureStaysWhenTheDrawingIsMalformed) {
  Fixture fixture("  0\nVERTEX\n");
  ScratchDirectory::Fill(fixture.options.picture, "old");
  fixture.options.existing = Existing::kReplace;
  EXPECT_EQ(run(fixture.options).code, kExitInput);
  EXPECT_EQ(ScratchDirectory::ContentOf(fixture.options.picture), "old");
}

TEST(PreviewCommand, OldPictureIsReplacedOnlyWhenItMayBe) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  ScratchDirectory::Fill(fixture.options.picture, "old");
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitOutputExists);
  expectContains(outcome.said, "--force");
  EXPECT_EQ(ScratchDirectory::ContentOf(fixture.options.picture), "old");
  fixture.options.existing = Existing::kReplace;
  EXPECT_EQ(run(fixture.options).code, kExitDone);
  EXPECT_EQ(ScratchDirectory::ContentOf(fixture.options.picture).substr(1, 3), "PNG");
}

TEST(PreviewCommand, OtherEntitiesAreNoted) {
  const Fixture fixture(lineText(1, 0, 0, 1, 1) + entityText("HATCH", "10=0"));
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitDone);
  expectContains(outcome.said, "1 entities of other kinds");
  expectContains(outcome.said, "'HATCH'");
}

TEST(PreviewCommand, DrawingIsNeverOverwrittenByItsPicture) {
  const ScratchDirectory directory;
  const std::string text = drawingText("", lineText(1, 0, 0, 1, 1));
  ScratchDirectory::Fill(directory / "plan.png", text);
  EXPECT_EQ(
      run({directory / "plan.png", directory / "plan.png", 200, 1252, Existing::kReplace}).code,
      kExitUsage);
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.png"), text);
}

TEST(PreviewCommand, TowerOfInsertsIsALimit) {
  const ScratchDirectory directory;
  std::string blocks = blockText(blockName(0), lineText(1, 0, 0, 1, 1));
  for (std::size_t level = 1; level < 40; ++level) {
    const std::string inner = insertText(blockName(level - 1), 0, 0);
    blocks += blockText(blockName(level), inner + inner);
  }
  ScratchDirectory::Fill(directory / "plan.dxf",
                         drawingText(blocks, insertText(blockName(39), 0, 0)));
  const Outcome outcome =
      run({directory / "plan.dxf", directory / "plan.png", 200, 1252, Existing::kKeep});
  EXPECT_EQ(outcome.code, kExitLimit);
  expectContains(outcome.said, "points and letters");
}

}  // namespace
