// Binary STL: what is read in place is what assimp's reader makes of the same file.
#include <assimp/scene.h>
#include <sys/mman.h>
#include <unistd.h>

#include <assimp/Importer.hpp>
#include <bit>
#include <cstdint>
#include <string>

#include "app/model/stl_triangles.h"
#include "fuzz/require.h"

namespace {

using namespace dxf2d;

// A file in memory, which has a name as long as this exists.
class MemoryFile {
 public:
  MemoryFile() : file_(memfd_create("fuzz", MFD_CLOEXEC)) {
    require(file_ >= 0, "there is memory for a file");
  }
  ~MemoryFile() { close(file_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  void Write(const std::uint8_t* data, std::size_t size) const {
    require(ftruncate(file_, 0) == 0, "a file can be emptied");
    require(pwrite(file_, data, size, 0) == static_cast<ssize_t>(size), "a file can be written");
  }
  std::string Path() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  int file_;
};

bool isSame(float a, float b) {
  return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

void compare(const StlTriangles& triangles, const aiMesh& mesh) {
  require(mesh.mNumFaces == triangles.Count(), "every record is a triangle");
  require(mesh.mNumVertices == 3 * triangles.Count(), "a triangle has three vertices");
  for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
    const StlTriangles::Vertex read = triangles.VertexAt(i);
    const aiVector3D& expected = mesh.mVertices[i];
    require(isSame(read.x, expected.x) && isSame(read.y, expected.y) && isSame(read.z, expected.z),
            "a vertex is what assimp reads");
    require(mesh.mFaces[i / 3].mIndices[i % 3] == i, "corners are numbered along");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const MemoryFile file;
  file.Write(data, size);
  const auto triangles = StlTriangles::Open(file.Path());
  if (triangles) {
    Assimp::Importer importer;
    const aiScene* const scene = importer.ReadFileFromMemory(data, size, 0, "stl");
    require(scene != nullptr && scene->mNumMeshes == 1, "assimp reads what is read in place");
    compare(*triangles, *scene->mMeshes[0]);
    const auto sample = triangles->Sample();
    Assimp::Importer ofSample;
    const aiScene* const part = ofSample.ReadFileFromMemory(sample.data(), sample.size(), 0, "stl");
    require(part != nullptr && part->mNumMeshes == 1 && part->mMeshes[0]->mNumFaces == 1,
            "assimp reads the sample");
  }
  return 0;
}
