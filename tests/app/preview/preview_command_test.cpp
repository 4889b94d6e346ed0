#include "app/preview/preview_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "app/cli/command_line.h"
#include "app/cli/exit_code.h"
#include "tests/app/drawing/drawing_text.h"
#include "tests/support/scratch_directory.h"

namespace dxf2d {

namespace {

struct Outcome {
  int code = 0;
  std::string said;
};

Outcome run(const PreviewOptions& options, const std::vector<std::string>& more = {}) {
  std::vector<std::string> words{"dxf2d", "preview"};
  words.insert(words.end(), options.drawings.begin(), options.drawings.end());
  for (const std::string& word : {std::string("-o"), options.output, std::string("--size"),
                                  std::to_string(options.style.size)}) {
    words.push_back(word);
  }
  if (options.existing == Existing::kReplace) {
    words.emplace_back("--force");
  }
  words.insert(words.end(), more.begin(), more.end());
  std::vector<const char*> arguments;
  for (const std::string& word : words) {
    arguments.push_back(word.c_str());
  }
  testing::internal::CaptureStderr();
  Program program;
  program.commands = {previewCommand()};
  const int code = runCommandLine(program, static_cast<int>(arguments.size()), arguments.data());
  return {code, testing::internal::GetCapturedStderr()};
}

// A directory that holds plan.dxf, and the options that make plan.png of it.
struct Fixture {
  ScratchDirectory directory;
  PreviewOptions options{.drawings = {directory / "plan.dxf"}, .output = directory / "plan.png"};

  explicit Fixture(const std::string& entities) {
    options.style.size = 200;
    ScratchDirectory::Fill(options.drawings.front(), drawingText("", entities));
  }
  void ExpectNoPicture() const {
    EXPECT_FALSE(std::filesystem::exists(options.output));
    EXPECT_EQ(directory.FileCount(), 1U);
  }
};

void expectContains(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << text;
}

TEST(PreviewCommand, MakesEveryKindOfPictureSilently) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  for (const char* name : {"plan.png", "plan.svg", "plan.pdf"}) {
    fixture.options.output = fixture.directory / name;
    const Outcome outcome = run(fixture.options);
    EXPECT_EQ(outcome.code, kExitDone);
    EXPECT_EQ(outcome.said, "");
    EXPECT_GT(std::filesystem::file_size(fixture.options.output), 100U);
  }
}

TEST(PreviewCommand, UnknownExtensionIsAUsageError) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  fixture.options.output = fixture.directory / "plan.jpg";
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitUsage);
  expectContains(outcome.said, "end the name in .png, .svg or .pdf");
  fixture.ExpectNoPicture();
}

TEST(PreviewCommand, EmptyDrawingHoldsNothingToDraw) {
  const Fixture fixture("");
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitNothingToDraw);
  expectContains(outcome.said, "plan.dxf: contains nothing to draw; ");
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
  fixture.options.drawings.front() = fixture.directory / "other.dxf";
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitInput);
  expectContains(outcome.said, "other.dxf: cannot be read: No such file or directory; ");
}

TEST(PreviewCommand, MissingDirectoryOfThePictureIsNamed) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  fixture.options.output = fixture.directory / "out/plan.png";
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitOutputNotMade);
  expectContains(outcome.said, "does not exist; create it or choose another");
}

TEST(PreviewCommand, OldPictureStaysWhenTheDrawingIsMalformed) {
  Fixture fixture("  0\nVERTEX\n");
  ScratchDirectory::Fill(fixture.options.output, "old");
  fixture.options.existing = Existing::kReplace;
  EXPECT_EQ(run(fixture.options).code, kExitInput);
  EXPECT_EQ(ScratchDirectory::ContentOf(fixture.options.output), "old");
}

TEST(PreviewCommand, OldPictureIsReplacedOnlyWhenItMayBe) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  ScratchDirectory::Fill(fixture.options.output, "old");
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitOutputExists);
  expectContains(outcome.said, "--force");
  EXPECT_EQ(ScratchDirectory::ContentOf(fixture.options.output), "old");
  fixture.options.existing = Existing::kReplace;
  EXPECT_EQ(run(fixture.options).code, kExitDone);
  EXPECT_EQ(ScratchDirectory::ContentOf(fixture.options.output).substr(1, 3), "PNG");
}

TEST(PreviewCommand, OtherEntitiesAreNoted) {
  const Fixture fixture(lineText(1, 0, 0, 1, 1) + entityText("HATCH", "10=0"));
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitDone);
  expectContains(outcome.said, "1 entity of an unsupported kind was left out, ");
  expectContains(outcome.said, "'HATCH'");
}

TEST(PreviewCommand, DrawingIsNeverOverwrittenByItsPicture) {
  const ScratchDirectory directory;
  const std::string text = drawingText("", lineText(1, 0, 0, 1, 1));
  ScratchDirectory::Fill(directory / "plan.png", text);
  EXPECT_EQ(run({.drawings = {directory / "plan.png"},
                 .output = directory / "plan.png",
                 .existing = Existing::kReplace})
                .code,
            kExitUsage);
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.png"), text);
}

// A drawing whose last block stands for 2^`levels` lines.
void fillTower(const std::string& path, std::size_t levels) {
  std::string blocks = blockText(blockName(0), lineText(1, 0, 0, 1, 1));
  for (std::size_t level = 1; level <= levels; ++level) {
    const std::string inner = insertText(blockName(level - 1), 0, 0);
    blocks += blockText(blockName(level), inner + inner);
  }
  ScratchDirectory::Fill(path, drawingText(blocks, insertText(blockName(levels), 0, 0)));
}

TEST(PreviewCommand, TowerOfInsertsIsALimit) {
  const ScratchDirectory directory;
  // More than is read, and more than is drawn.
  for (const std::size_t levels : {40U, 23U}) {
    fillTower(directory / "plan.dxf", levels);
    const Outcome outcome =
        run({.drawings = {directory / "plan.dxf"}, .output = directory / "plan.png"});
    EXPECT_EQ(outcome.code, kExitLimit);
    expectContains(outcome.said, "points and letters");
    EXPECT_EQ(directory.FileCount(), 1U);
  }
}

TEST(PreviewCommand, PictureThatGrowsTooLargeIsALimit) {
  const ScratchDirectory directory;
  fillTower(directory / "plan.dxf", 20);
  const Outcome outcome =
      run({.drawings = {directory / "plan.dxf"}, .output = directory / "plan.svg"});
  EXPECT_EQ(outcome.code, kExitLimit);
  expectContains(outcome.said, "of more than 128 MiB");
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(PreviewCommand, SeveralDrawingsGoIntoADirectory) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  const std::string other = fixture.directory / "other.dxf";
  ScratchDirectory::Fill(other, drawingText("", lineText(1, 0, 0, 1, 1)));
  fixture.options.drawings.push_back(other);
  fixture.options.output = fixture.directory / "pictures/";
  std::filesystem::create_directory(fixture.options.output);
  const Outcome outcome = run(fixture.options, {"--format", "svg"});
  EXPECT_EQ(outcome.code, kExitDone) << outcome.said;
  EXPECT_TRUE(std::filesystem::exists(fixture.directory / "pictures/plan.svg"));
  EXPECT_TRUE(std::filesystem::exists(fixture.directory / "pictures/other.svg"));
}

TEST(PreviewCommand, OneBrokenDrawingOfSeveralLeavesTheOthers) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  const std::string other = fixture.directory / "other.dxf";
  ScratchDirectory::Fill(other, "broken");
  fixture.options.drawings.insert(fixture.options.drawings.begin(), other);
  fixture.options.output = fixture.directory / "pictures/";
  std::filesystem::create_directory(fixture.options.output);
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitSomeFailed);
  expectContains(outcome.said, "1 of 2 pictures were not drawn");
  EXPECT_TRUE(std::filesystem::exists(fixture.directory / "pictures/plan.png"));
}

TEST(PreviewCommand, SeveralDrawingsNeedADirectory) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  fixture.options.drawings.push_back(fixture.directory / "other.dxf");
  const Outcome outcome = run(fixture.options);
  EXPECT_EQ(outcome.code, kExitOutputNotMade);
  expectContains(outcome.said, "plan.png: the directory does not exist; create it");
  fixture.ExpectNoPicture();
}

TEST(PreviewCommand, PicturesOfOneNameAreRefused) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  fixture.options.drawings.push_back(fixture.options.drawings.front());
  EXPECT_EQ(run(fixture.options).code, kExitUsage);
}

TEST(PreviewCommand, AScaleNeedsUnits) {
  Fixture fixture(lineText(1, 0, 0, 1, 1));
  const Outcome outcome = run(fixture.options, {"--plot-scale", "1:1"});
  EXPECT_EQ(outcome.code, kExitUsage);
  expectContains(outcome.said, "does not say its units");
  EXPECT_EQ(run(fixture.options, {"--plot-scale", "1:1", "--source-units", "mm"}).code, kExitDone);
}

}  // namespace

}  // namespace dxf2d
