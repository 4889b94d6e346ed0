#include "app/process/confinement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "app/process/descriptor.h"
#include "app/process/worker_process.h"
#include "tests/support/scratch_directory.h"

namespace dxf2d {

namespace {

// Tries everything in a confined worker process; see confineAndTry in test_worker.cpp.
class Confined : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(directory_ / "models");
    std::filesystem::create_directory(directory_ / "other");
    ScratchDirectory::Fill(directory_ / "models/model.obj", "v 0 0 0");
    ScratchDirectory::Fill(directory_ / "other/secret", "secret");
    const Descriptor output(open((directory_ / "other/output").c_str(), O_CREAT | O_RDWR, 0600));
    ASSERT_TRUE(output.IsOpen());
    const WorkerResult end =
        runWorker({"confine",
                   {directory_ / "models", std::to_string(output.Number()), directory_ / "other"},
                   {output.Number()},
                   false,
                   TEST_WORKER});
    ASSERT_TRUE(end.Returned(0));
    outcome_ = end.text;
  }

  void Expect(const std::string& deed, const char* outcome) const {
    EXPECT_NE(outcome_.find(deed + ": " + outcome + "\n"), std::string::npos) << outcome_;
  }

  ScratchDirectory directory_;
  std::string outcome_;
};

TEST_F(Confined, TheModelIsReadAndTheOutputWritten) {
  Expect("read the model", "done");
  Expect("write the output", "done");
  Expect("open the output", "done");
}

TEST_F(Confined, OtherFilesAreNeitherReadNorWritten) {
  if (availableConfinement().fileRules == 0) {
    GTEST_SKIP() << "this system has no Landlock";
  }
  for (const char* deed :
       {"write the model", "make a file", "read another file", "list another directory"}) {
    Expect(deed, "refused");
  }
}

TEST_F(Confined, NothingButFilesIsReached) {
  if (!availableConfinement().callFilter) {
    GTEST_SKIP() << "this system has no filter of system calls";
  }
  for (const char* deed : {"remove a file", "change rights", "open a socket", "open a local socket",
                           "start a program", "start a process", "signal the parent"}) {
    Expect(deed, "refused");
  }
}

// Of each part of the list of refused calls, which is sorted by number, the first and others.
TEST(Confinement, CallsOfAllNumbersAreRefusedAndTheirNeighborsAllowed) {
  if (!availableConfinement().callFilter) {
    GTEST_SKIP() << "this system has no filter of system calls";
  }
  const std::pair<int, const char*> calls[] = {
      {SYS_read, "allowed "},           {SYS_fstat, "allowed "},        {SYS_socket, "refused "},
      {SYS_socketpair, "refused "},     {SYS_execve, "refused "},       {SYS_ptrace, "refused "},
      {SYS_setuid, "refused "},         {SYS_setgroups, "refused "},    {SYS_fchmod, "refused "},
      {SYS_mount, "refused "},          {SYS_fsetxattr, "refused "},    {SYS_fgetxattr, "allowed "},
      {SYS_tkill, "refused "},          {SYS_unlinkat, "refused "},     {SYS_openat, "allowed "},
      {SYS_utimensat, "refused "},      {SYS_bpf, "refused "},          {SYS_execveat, "refused "},
      {SYS_io_uring_setup, "refused "}, {SYS_memfd_create, "refused "}, {SYS_close, "allowed "}};
  std::vector<std::string> words;
  std::string expected;
  for (const auto& [number, outcome] : calls) {
    words.push_back(std::to_string(number));
    expected += outcome;
  }
  EXPECT_EQ(runWorker({"tell refused calls", words, {}, false, TEST_WORKER}).text, expected);
}

}  // namespace

}  // namespace dxf2d
