// Importer programs: readers of model formats that are programs of their own.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace dxf2d {

struct ImporterFormat {
  // As users know it, such as "STEP".
  std::string name;
  // The ends of its files' names, in lower case with their dots.
  std::vector<std::string> extensions;
  // What its files begin with, in files of other names; empty when nothing tells.
  std::string magic;
};

// What the description of an importer says (see docs/importers.md).
struct Importer {
  std::string name;
  std::string version;
  std::vector<ImporterFormat> formats;
  // The program and its arguments, in which "{in}" and "{out}" stand for the model and for the
  // binary glTF to write.
  std::vector<std::string> command;
  // By what users can ask for ("tolerance", "spaces"): the words before "{in}" that ask the program
  // for it, in which "{value}" stands for its value.
  std::map<std::string, std::vector<std::string>> options;
  // Of the description; the importer may read and run what is in it.
  std::string directory;
};

// What the user asks of the importer of a model: values by names, empty for flags.
using ImportSettings = std::map<std::string, std::string>;

// The words that have the importer read `model` and write `result`. What it has no option for is
// left out.
std::vector<std::string> commandFor(const Importer& importer, const ImportSettings& settings,
                                    const std::string& model, const std::string& result);

// Reads a description, a JSON file. A program whose name begins with "./" is made a path in the
// description's directory. Throws UsageError, which names the file and the member at fault.
Importer readImporter(const std::string& path);

// The importers that the user named first (`asked`, paths of descriptions), then those in the
// directories of DXF2D_IMPORTER_PATH, then those beside the worker program, each directory in the
// order of its names. Of several with one name the first stays. Throws UsageError.
std::vector<Importer> findImporters(const std::vector<std::string>& asked);

// The importer of a file: the first that knows the end of its name. Nothing when none does.
const Importer* importerByName(const std::vector<Importer>& importers, const std::string& model);

// The first importer whose format's files begin like this one. Nothing when there is none, or the
// file cannot be read.
const Importer* importerByMagic(const std::vector<Importer>& importers, const std::string& model);

}  // namespace dxf2d
