// The triangles of a binary STL file.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <string>

#include "app/process/input_mapping.h"

namespace dxf2d {

// Largest meshes come as binary STL: records of 50 bytes, which are read where they are. assimp
// takes longer to copy them, a face at a time, than everything else takes that is done to them.
//
// A file is 80 bytes of any kind, the number of triangles in 4, and for each 12 of a normal, 36 of
// three corners (x, y, z as binary32) and 2 that some programs keep a color in; all little-endian.
// https://www.loc.gov/preservation/digital/formats/fdd/fdd000505.shtml
class StlTriangles {
 public:
  // Three numbers as the file has them, finite or not.
  struct Vertex {
    float x;
    float y;
    float z;
  };
  static constexpr std::size_t kHeaderSize = 84;
  static constexpr std::size_t kRecordSize = 50;

  // Null for everything that a reader of all sorts of STL had better look at: text, files whose
  // size is not that of their number of triangles, files without triangles or with more than
  // vertices have numbers, and those with a color for all triangles in their header.
  static std::unique_ptr<const StlTriangles> Open(const std::string& path);

  explicit StlTriangles(const std::string& path) : file_(path) {}

  std::size_t Count() const { return (file_.Bytes().size() - kHeaderSize) / kRecordSize; }
  // Corner `number % 3` of triangle `number / 3`.
  Vertex VertexAt(std::size_t number) const {
    const char* const record =
        file_.Bytes().data() + kHeaderSize + number / 3 * kRecordSize + kNormalSize;
    Vertex vertex;
    std::memcpy(&vertex, record + number % 3 * sizeof vertex, sizeof vertex);
    return vertex;
  }
  std::array<Vertex, 3> TriangleAt(std::size_t number) const {
    std::array<Vertex, 3> corners;
    std::memcpy(&corners, file_.Bytes().data() + kHeaderSize + number * kRecordSize + kNormalSize,
                sizeof corners);
    return corners;
  }
  // A file that holds the first of these triangles and nothing else, but is the same otherwise.
  std::array<char, kHeaderSize + kRecordSize> Sample() const;

  // False once the file has changed since it was opened, or could not be read: what was taken from
  // it may then be anything.
  bool IsWhole() const { return file_.IsWhole(); }

 private:
  static constexpr std::size_t kNormalSize = 12;

  bool IsPlain() const;

  InputMapping file_;
};

}  // namespace dxf2d
