// A host that has classes of its own under the framework's names, as a host built on that framework
// does. It sees KtScene's public headers only, and its classes take no part in an export.
#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <string>

// What these do is of no use to anyone: a drawing made with them would show it. They are compiled
// with default visibility, so that they stand before the libraries' in the search for symbols.
class CString {
 public:
  CString();
  CString(const char16_t* text);
  void Format(const char16_t* format, ...);
  int GetLength() const;
};

class CFileException {
 public:
  enum Cause { none, genericException };
  explicit CFileException(Cause cause = none, long osError = -1,
                          const char16_t* fileName = nullptr);
  CFileException(const CFileException& other);
  virtual ~CFileException();
  static Cause OsErrorToCause(long osError);
};

class CFile {
 public:
  CFile();
  virtual ~CFile();
  bool Open(const char16_t* path, unsigned flags, CFileException* exception = nullptr);
  void Write(const void* data, std::size_t count);
  void Flush();
  void Close();
};

class CWinApp {
 public:
  explicit CWinApp(const char16_t* appName = nullptr);
  virtual ~CWinApp();
  virtual bool InitInstance();
};

#include <dlfcn.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "all_ktscene_headers.h"

namespace {

int ownCalls = 0;

}  // namespace

CString::CString() { ++ownCalls; }
CString::CString(const char16_t* /*text*/) { ++ownCalls; }
void CString::Format(const char16_t* /*format*/, ...) { ++ownCalls; }
int CString::GetLength() const { return ++ownCalls; }

CFileException::CFileException(Cause /*cause*/, long /*osError*/, const char16_t* /*fileName*/) {
  ++ownCalls;
}
CFileException::CFileException(const CFileException& /*other*/) { ++ownCalls; }
CFileException::~CFileException() { ++ownCalls; }
CFileException::Cause CFileException::OsErrorToCause(long /*osError*/) {
  ++ownCalls;
  return none;
}

CFile::CFile() { ++ownCalls; }
CFile::~CFile() { ++ownCalls; }
bool CFile::Open(const char16_t* /*path*/, unsigned /*flags*/, CFileException* /*exception*/) {
  ++ownCalls;
  return true;
}
void CFile::Write(const void* /*data*/, std::size_t /*count*/) { ++ownCalls; }
void CFile::Flush() { ++ownCalls; }
void CFile::Close() { ++ownCalls; }

CWinApp::CWinApp(const char16_t* /*appName*/) { ++ownCalls; }
CWinApp::~CWinApp() { ++ownCalls; }
bool CWinApp::InitInstance() { return ++ownCalls > 0; }

namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The plug-in, loaded once and, as hosts are told, never unloaded.
KtTraverser traverserOfPlugin() {
  using Entry = bool (*)(KtTraverser*, void*);
  void* module = dlopen(DXF2D_MODULE, RTLD_NOW | RTLD_LOCAL);
  EXPECT_NE(module, nullptr) << dlerror();
  const auto entry = reinterpret_cast<Entry>(dlsym(module, "InitializeTraverser"));
  KtTraverser traverser;
  EXPECT_TRUE(entry(&traverser, nullptr));
  return traverser;
}

std::vector<fs::path> goldenScenes() {
  std::vector<fs::path> scenes;
  for (const auto& entry : fs::directory_iterator(DXF2D_GOLDEN_FOLDER)) {
    if (entry.path().extension() == ".json") {
      scenes.push_back(entry.path());
    }
  }
  return scenes;
}

}  // namespace

TEST(OwnFramework, GetsTheBytesOfTheGoldenDrawings) {
  const KtTraverser traverser = traverserOfPlugin();
  const fs::path drawing = fs::path(testing::TempDir()) / "own_framework.dxf";
  ASSERT_GE(goldenScenes().size(), 8U);
  for (const fs::path& path : goldenScenes()) {
    KtScene scene = ReadSceneFile(path.string());
    EXPECT_TRUE(traverser.Walk(scene, drawing.u16string())) << path;
    EXPECT_EQ(bytesOf(drawing), bytesOf(fs::path(path).replace_extension(".dxf"))) << path;
  }
  fs::remove(drawing);
  EXPECT_EQ(ownCalls, 0);
}

TEST(OwnFramework, CatchesAFullDiskAsStdException) {
  if (!fs::exists("/dev/full")) {
    GTEST_SKIP() << "no /dev/full here";
  }
  const KtTraverser traverser = traverserOfPlugin();
  KtScene scene = ReadSceneFile(goldenScenes().front().string());
  std::string message;
  try {
    traverser.Walk(scene, u"/dev/full");
  } catch (const CFileException&) {
    message = "caught as the host's own";
  } catch (const std::exception& error) {
    message = error.what();
  }
  EXPECT_EQ(message,
            "The file \"/dev/full\" could not be written in full because the disk is full.");
  try {
    traverser.Callbacks().closeFile();
  } catch (const std::exception&) {
    // It may fail once more; the export has ended either way.
  }
  EXPECT_EQ(ownCalls, 0);
}
