#include "importers/step/cad_file.h"

#include <IGESCAFControl_Reader.hxx>
#include <IGESData_IGESModel.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <TColStd_SequenceOfAsciiString.hxx>
#include <XCAFApp_Application.hxx>
#include <array>
#include <fstream>
#include <string_view>

namespace dxf2d::step {
namespace {

struct NamedUnit {
  std::string_view inFile;
  std::string_view ours;
  double millimeters;
};

// STEP spells units out (ISO 10303-41), IGES abbreviates them (global parameter 15).
constexpr std::array kUnits = std::to_array<NamedUnit>({{"millimetre", "mm", 1.0},
                                                        {"centimetre", "cm", 10.0},
                                                        {"metre", "m", 1000.0},
                                                        {"inch", "in", 25.4},
                                                        {"foot", "ft", 304.8},
                                                        {"mm", "mm", 1.0},
                                                        {"cm", "cm", 10.0},
                                                        {"m", "m", 1000.0},
                                                        {"in", "in", 25.4},
                                                        {"ft", "ft", 304.8}});
constexpr NamedUnit kMillimeter = kUnits.front();

NamedUnit unitNamed(std::string name) {
  for (char& c : name) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  for (const NamedUnit& unit : kUnits) {
    if (unit.inFile == name) {
      return unit;
    }
  }
  return kMillimeter;
}

Handle(TDocStd_Document) newDocument() {
  Handle(TDocStd_Document) document;
  XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
  return document;
}

[[noreturn]] void failToParse() { throw ReadError("it is not valid, or is cut off"); }

// Reads `path` with one of the two readers, which convert to millimeters; `unitOf` asks it for the
// file's unit.
template <typename Reader, typename UnitOf>
CadFile readWith(Reader& reader, const std::string& path, UnitOf unitOf) {
  reader.SetNameMode(true);
  reader.SetColorMode(true);
  if (reader.ReadFile(path.c_str()) != IFSelect_RetDone) {
    failToParse();
  }
  const NamedUnit unit = unitOf();
  CadFile file{newDocument(), std::string(unit.ours), unit.millimeters};
  if (!reader.Transfer(file.document)) {
    failToParse();
  }
  return file;
}

CadFile readStep(const std::string& path) {
  STEPCAFControl_Reader reader;
  const auto unitOf = [&] {
    TColStd_SequenceOfAsciiString lengths;
    TColStd_SequenceOfAsciiString angles;
    TColStd_SequenceOfAsciiString solidAngles;
    reader.ChangeReader().FileUnits(lengths, angles, solidAngles);
    return lengths.IsEmpty() ? kMillimeter : unitNamed(lengths.First().ToCString());
  };
  return readWith(reader, path, unitOf);
}

CadFile readIges(const std::string& path) {
  IGESCAFControl_Reader reader;
  const auto unitOf = [&] {
    const auto model = Handle(IGESData_IGESModel)::DownCast(reader.Model());
    const auto name = model.IsNull() ? nullptr : model->GlobalSection().UnitName();
    return name.IsNull() ? kMillimeter : unitNamed(name->ToCString());
  };
  CadFile file = readWith(reader, path, unitOf);
  file.hasLooseFaces = true;
  return file;
}

// Column 73 of each line of IGES is the letter of its section, "S" in the first.
bool isIges(std::string_view beginning) {
  constexpr std::size_t kSectionColumn = 72;
  return beginning.size() > kSectionColumn && beginning[kSectionColumn] == 'S';
}

}  // namespace

CadFile readCadFile(const std::string& path) {
  // What it prints is for programmers.
  Message::DefaultMessenger()->ChangePrinters().Clear();
  std::string beginning(256, '\0');
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw ReadError("it cannot be opened");
  }
  file.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
  beginning.resize(static_cast<std::size_t>(file.gcount()));
  if (beginning.find("ISO-10303-21") != std::string::npos) {
    return readStep(path);
  }
  if (isIges(beginning)) {
    return readIges(path);
  }
  throw ReadError("it is neither STEP nor IGES");
}

}  // namespace dxf2d::step
