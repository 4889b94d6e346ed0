// STEP and IGES files as documents of OpenCASCADE.
#pragma once

#include <TDocStd_Document.hxx>
#include <stdexcept>
#include <string>

namespace dxf2d::step {

// A file that cannot be read; what() is a reason without a period.
class ReadError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct CadFile {
  // Shapes, names, colors and assemblies (XCAF), in millimeters.
  Handle(TDocStd_Document) document;
  // That of the file if it is "mm", "cm", "m", "in" or "ft", otherwise "mm".
  std::string unit;
  double millimetersPerUnit = 1.0;
  // Whether each face has edges of its own where it meets its neighbors, as in IGES.
  bool hasLooseFaces = false;
};

// Reads a file whose first bytes say which of the two it is. Throws ReadError.
CadFile readCadFile(const std::string& path);

}  // namespace dxf2d::step
