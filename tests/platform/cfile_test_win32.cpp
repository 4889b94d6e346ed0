#include "platform/cfile.h"
#include "platform/windows_api.h"
#include "tests/platform/cfile_fixture.h"

namespace {

// A handle that closes itself.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() { Close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  HANDLE Get() const { return handle_; }
  void Close() {
    if (handle_ != INVALID_HANDLE_VALUE) {
      CloseHandle(handle_);
    }
    handle_ = INVALID_HANDLE_VALUE;
  }

 private:
  HANDLE handle_;
};

}  // namespace

TEST_F(CFileTest, NobodyElseOpensAFileThatIsOpen) {
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const Handle other(CreateFileW((folder_ / "a").c_str(), GENERIC_READ, kShareAll, nullptr,
                                 OPEN_EXISTING, 0, nullptr));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
  EXPECT_EQ(other.Get(), INVALID_HANDLE_VALUE);
}

TEST_F(CFileTest, FileThatAnotherReadsIsInUseAndKeepsItsBytes) {
  Put("a", "abc");
  {
    const Handle other(CreateFileW((folder_ / "a").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                   OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(other.Get(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(causeOfOpen(Name("a")), CFileException::sharingViolation);
  }
  EXPECT_EQ(Content("a"), "abc");
}

TEST_F(CFileTest, SharingViolationHasASentenceOfItsOwn) {
  CFile first;
  ASSERT_TRUE(first.Open(Name("a").c_str(), kCreate));
  CFile second;
  CFileException exception;
  EXPECT_FALSE(second.Open(Name("a").c_str(), kCreate, &exception));
  EXPECT_EQ(exception.m_lOsError, ERROR_SHARING_VIOLATION);
  EXPECT_TRUE(std::string(exception.what()).ends_with(" could not be opened because it is in use."))
      << exception.what();
}

TEST_F(CFileTest, NameIsNotOfTheCodePage) {
  const std::u16string name = folder_.u16string() + u"/Süd План 日本 😀.dxf";
  CFile file;
  ASSERT_TRUE(file.Open(name.c_str(), kCreate));
  write(file, "abc");
  file.Close();
  EXPECT_EQ(fs::file_size(fs::path(name)), 3U);
}

TEST_F(CFileTest, PathMayBeLongerThanMaxPath) {
  const fs::path deep = folder_ / std::string(120, 'b') / std::string(120, 'c');
  const std::wstring marked = L"\\\\?\\" + deep.wstring();
  ASSERT_NE(CreateDirectoryW(deep.parent_path().c_str(), nullptr), FALSE);
  ASSERT_NE(CreateDirectoryW(marked.c_str(), nullptr), FALSE);
  const std::u16string name = deep.u16string() + u"/a name.dxf";
  ASSERT_GT(name.size(), static_cast<std::size_t>(MAX_PATH));
  CFile file;
  ASSERT_TRUE(file.Open(name.c_str(), kCreate));
  write(file, "abc");
  file.Close();
  WIN32_FILE_ATTRIBUTE_DATA found{};
  EXPECT_NE(GetFileAttributesExW((marked + L"\\a name.dxf").c_str(), GetFileExInfoStandard, &found),
            FALSE);
  EXPECT_EQ(found.nFileSizeLow, 3U);
  DeleteFileW((marked + L"\\a name.dxf").c_str());
  RemoveDirectoryW(marked.c_str());
}

TEST_F(CFileTest, HandleIsNotInherited) {
  // The number that the next handle will have.
  Handle next(CreateFileW(L"NUL", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  const HANDLE number = next.Get();
  next.Close();
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  DWORD flags = HANDLE_FLAG_INHERIT;
  ASSERT_NE(GetHandleInformation(number, &flags), FALSE);
  EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0U);
}

TEST_F(CFileTest, ClosedPipeIsAnError) {
  constexpr wchar_t kName[] = LR"(\\.\pipe\dxf2d-cfile-test)";
  Handle reader(
      CreateNamedPipeW(kName, PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE, 1, 0, 65536, 0, nullptr));
  ASSERT_NE(reader.Get(), INVALID_HANDLE_VALUE);
  CFile file;
  ASSERT_TRUE(file.Open(uR"(\\.\pipe\dxf2d-cfile-test)", CFile::modeWrite));
  reader.Close();
  write(file, "abc");
  const CFileException exception = thrownBy([&] { file.Flush(); });
  EXPECT_EQ(exception.m_cause, CFileException::genericException);
  EXPECT_GT(exception.m_lOsError, 0);
}
