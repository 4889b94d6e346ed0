// Which models can be read, by the ends of their names.
#pragma once

#include <string>
#include <vector>

#include "app/export/export_request.h"

namespace dxf2d {

// A reader of the worker program.
struct ModelReader {
  std::string name;
  // ".3ds" and so on, in small letters.
  std::vector<std::string> ends;
};

// The readers of the worker program. Asks a worker process, since this program is not linked with
// them. Throws Failure when that fails.
std::vector<ModelReader> modelReaders(const ResourceLimits& limits);

// The ends that these know, and those of importer programs. Throw Failure.
std::vector<std::string> readerEnds(const ExportOptions& options);
std::vector<std::string> importerEnds(const ExportOptions& options);

}  // namespace dxf2d
