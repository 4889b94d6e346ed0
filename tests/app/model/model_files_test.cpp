#include "app/model/model_files.h"

#include <gtest/gtest.h>

#include <assimp/IOStream.hpp>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/scratch_directory.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

class ModelFilesTest : public testing::Test {
 protected:
  ModelFilesTest() : model_(directory_ / "model.obj") { ScratchDirectory::Fill(model_, kContent); }

  // Opens the model as an importer does.
  void Open() { stream_.reset(system_.Open(model_.c_str(), "rb")); }
  // Returns how many bytes were read.
  std::size_t Read(std::size_t count) {
    std::string bytes(count, '\0');
    return stream_->Read(bytes.data(), 1, count);
  }
  void Append() { std::ofstream(model_, std::ios::app) << "f 1 2 3\n"; }

  static constexpr const char* kContent = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
  static constexpr std::size_t kSize = 24;

  ScratchDirectory directory_;
  std::string model_;
  ModelFiles files_;
  ModelFileSystem system_{directory_ / "model.obj", false, files_};
  std::unique_ptr<Assimp::IOStream> stream_;
};

TEST_F(ModelFilesTest, WholeReadIsNoFailure) {
  Open();
  ASSERT_NE(stream_, nullptr);
  EXPECT_EQ(stream_->FileSize(), kSize);
  EXPECT_EQ(Read(kSize), kSize);
  stream_.reset();
  EXPECT_EQ(files_.failure, "");
}

TEST_F(ModelFilesTest, ReadBeyondTheEndIsNoFailure) {
  Open();
  EXPECT_EQ(Read(kSize + 100), kSize);
  stream_.reset();
  EXPECT_EQ(files_.failure, "");
}

TEST_F(ModelFilesTest, FileThatGrowsIsAFailure) {
  Open();
  EXPECT_EQ(Read(4), 4U);
  Append();
  stream_.reset();
  EXPECT_EQ(files_.failedFile, "model.obj");
  EXPECT_EQ(files_.failure, "it changes while it is read");
}

TEST_F(ModelFilesTest, FileThatIsWrittenAnewInTheSameSizeIsAFailure) {
  Open();
  EXPECT_EQ(Read(4), 4U);
  ScratchDirectory::Fill(model_, std::string(kSize, 'x'));
  // As if a second later: the system's clock of files may be slower than this test.
  fs::last_write_time(model_, fs::last_write_time(model_) + std::chrono::seconds(1));
  stream_.reset();
  EXPECT_EQ(files_.failure, "it changes while it is read");
}

TEST_F(ModelFilesTest, FileThatShrinksIsAFailureAtOnce) {
  Open();
  fs::resize_file(model_, 10);
  EXPECT_EQ(Read(kSize), 10U);
  EXPECT_EQ(files_.failure, "it ends before its size is reached");
}

TEST_F(ModelFilesTest, FileThatIsReplacedIsReadToItsOwnEnd) {
  Open();
  EXPECT_EQ(Read(4), 4U);
  ScratchDirectory::Fill(directory_ / "new", "v 9 9 9\n");
  fs::rename(directory_ / "new", model_);
  EXPECT_EQ(Read(kSize), kSize - 4);
  stream_.reset();
  EXPECT_EQ(files_.failure, "");
}

TEST_F(ModelFilesTest, FirstFailureIsKept) {
  files_.NoteFailure("model.obj", "Input/output error");
  files_.NoteFailure("m.mtl", "it changes while it is read");
  EXPECT_EQ(files_.failedFile, "model.obj");
  EXPECT_EQ(files_.failure, "Input/output error");
}

TEST_F(ModelFilesTest, NameWithBothKindsOfSlashesIsMissingOnce) {
  for (const char* name : {"C:\\models\\m.mtl", "C:/models/m.mtl", "m.mtl"}) {
    EXPECT_EQ(system_.Open((directory_ / name).c_str(), "rb"), nullptr);
  }
  EXPECT_EQ(files_.missing, std::vector<std::string>{"C:\\models\\m.mtl"});
}

}  // namespace

}  // namespace dxf2d
