#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/cfile.h"
#include "tests/platform/cfile_fixture.h"
#include "tests/support/system_files.h"

// Other processes may read a file that is being written: the lock is known to CFile alone.
TEST_F(CFileTest, NameNeedNotBeUtf8) {
  const std::string name =
      "S\xFC"
      "d \xF0\x9F\x98\x80";
  CFile file;
  ASSERT_TRUE(file.Open(Name(name).c_str(), kCreate));
  EXPECT_TRUE(fs::exists(folder_ / name));
}

TEST_F(CFileTest, DevicesAreNotLocked) {
  CFile first;
  CFile second;
  EXPECT_TRUE(first.Open(kNullDevice, kCreate));
  EXPECT_TRUE(second.Open(kNullDevice, kCreate));
}

TEST_F(CFileTest, DescriptorIsNotInherited) {
  const int next = ::dup(0);
  ::close(next);
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  EXPECT_NE(fcntl(next, F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(CFileTest, LimitOnFileSizesIsAnErrorAndWhatFittedIsThere) {
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  write(file, "0123456789");
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{4, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const CFileException exception = thrownBy([&] { file.Flush(); });
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(exception.m_cause, CFileException::diskFull);
  write(file, "ab");
  file.Close();
  EXPECT_EQ(Content("a"), "0123ab");
}

TEST_F(CFileTest, ClosedPipeIsAnErrorWithoutASignal) {
  const std::string pipe = (folder_ / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  CFile file;
  ASSERT_TRUE(file.Open(Name("pipe").c_str(), kCreate));
  ::close(reader);
  write(file, "abc");
  const CFileException exception = thrownBy([&] { file.Flush(); });
  EXPECT_EQ(exception.m_lOsError, EPIPE);
  EXPECT_EQ(exception.m_cause, CFileException::genericException);
  sigset_t pending;
  sigpending(&pending);
  EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST_F(CFileTest, FlushHandsOverWhatIsGathered) {
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  write(file, "abc");
  EXPECT_EQ(Content("a"), "");
  file.Flush();
  EXPECT_EQ(Content("a"), "abc");
  write(file, "d");
  file.Close();
  EXPECT_EQ(Content("a"), "abcd");
}
