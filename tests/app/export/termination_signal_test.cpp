// dxf2d export when it is asked to end.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <iterator>

#include "app/process/descriptor.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

namespace fs = std::filesystem;

// An export that stands in the middle of its work: its scene is to come out of a FIFO, into which
// nobody writes.
class WaitingExport : public Dxf2d {
 protected:
  WaitingExport() { sigemptyset(&blocked_); }

  void SetUp() override {
    Dxf2d::SetUp();
    fs::create_directory(Path("out"));
    Write("out/plan.dxf", "mine");
    ASSERT_EQ(mkfifo(Path("scene.json").c_str(), 0600), 0);
    program_ = fork();
    ASSERT_GE(program_, 0);
    if (program_ == 0) {
      sigprocmask(SIG_SETMASK, &blocked_, nullptr);
      execl(DXF2D_PROGRAM, "dxf2d", "export", "--force", Path("scene.json").c_str(), "-o",
            Path("out/plan.dxf").c_str(), nullptr);
      std::_Exit(127);
    }
    // A FIFO can be opened for writing, without waiting, once a reader has it open.
    while (!writer_.IsOpen() && !HasEnded()) {
      sched_yield();
      writer_ = Descriptor(open(Path("scene.json").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    }
  }

  long FilesInOutput() const { return std::distance(fs::directory_iterator(Path("out")), {}); }

  bool HasEnded() { return waitpid(program_, &status_, WNOHANG) == program_; }

  void ExpectEndBy(int signal) {
    ASSERT_EQ(kill(program_, signal), 0);
    ASSERT_EQ(waitpid(program_, &status_, 0), program_);
    EXPECT_TRUE(WIFSIGNALED(status_));
    EXPECT_EQ(WTERMSIG(status_), signal);
    EXPECT_EQ(FilesInOutput(), 1);
    EXPECT_EQ(Read(Path("out/plan.dxf")), "mine");
  }

  // The end of the FIFO that nobody writes to.
  Descriptor writer_;
  // What the program is started with.
  sigset_t blocked_;
  pid_t program_ = -1;
  int status_ = 0;
};

TEST_F(WaitingExport, EndsBySigintAndLeavesTheExistingFile) { ExpectEndBy(SIGINT); }
TEST_F(WaitingExport, EndsBySigtermAndLeavesTheExistingFile) { ExpectEndBy(SIGTERM); }
TEST_F(WaitingExport, EndsBySighupAndLeavesTheExistingFile) { ExpectEndBy(SIGHUP); }
TEST_F(WaitingExport, EndsBySigquitAndLeavesTheExistingFile) { ExpectEndBy(SIGQUIT); }
TEST_F(WaitingExport, EndsBySigalrmAndLeavesTheExistingFile) { ExpectEndBy(SIGALRM); }
TEST_F(WaitingExport, EndsBySigusr1AndLeavesTheExistingFile) { ExpectEndBy(SIGUSR1); }

class WaitingExportWithBlockedSignals : public WaitingExport {
 protected:
  WaitingExportWithBlockedSignals() { sigaddset(&blocked_, SIGTERM); }
};

TEST_F(WaitingExportWithBlockedSignals, EndsByATermination) { ExpectEndBy(SIGTERM); }

}  // namespace

}  // namespace dxf2d
