// dxf2d-import-step: STEP and IGES as binary glTF for dxf2d, by OpenCASCADE.
#include <CLI/CLI.hpp>
#include <Standard_Failure.hxx>
#include <Standard_Version.hxx>
#include <cstdio>
#include <fstream>
#include <new>
#include <string>

#include "importers/step/cad_file.h"
#include "importers/step/cad_scene.h"

namespace {

// The last line of standard error is the reason that dxf2d tells its user.
int fail(const char* reason) {
  std::fprintf(stderr, "%s\n", reason);
  return 1;
}

int run(const std::string& input, const std::string& output,
        const dxf2d::step::DivisionOptions& options) {
  dxf2d::glb::Scene scene = dxf2d::step::sceneOf(dxf2d::step::readCadFile(input), options);
  scene.generator = "dxf2d-import-step " DXF2D_VERSION " with OpenCASCADE " OCC_VERSION_COMPLETE;
  std::ofstream file(output, std::ios::binary);
  dxf2d::glb::write(scene, file);
  file.close();
  return file ? 0 : fail("its triangles cannot be written; is the disk full?");
}

int importFile(int argc, char** argv) {
  CLI::App app("Turns a STEP or IGES file into binary glTF, with z up and in the file's own unit.",
               "dxf2d-import-step");
  std::string input;
  std::string output;
  dxf2d::step::DivisionOptions options;
  app.add_option("IN", input, "STEP (AP203, AP214, AP242) or IGES file")->required();
  app.add_option("OUT", output, "binary glTF file")->required();
  app.add_option(
         "--tolerance", options.distance,
         "How far triangles may be from their faces, in the file's unit (default: 1/2000 of "
         "the size of all)")
      ->check(CLI::PositiveNumber);
  app.add_option("--angle", options.angle,
                 "How far neighboring triangles may be turned, in degrees")
      ->check(CLI::Range(1.0, 90.0))
      ->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return run(input, output, options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return importFile(argc, argv);
  } catch (const std::bad_alloc&) {
    return fail("it needs more memory than there is");
  } catch (const Standard_Failure& failure) {
    std::fputs("OpenCASCADE reports: ", stderr);
    return fail(failure.GetMessageString());
  } catch (const std::exception& error) {
    return fail(error.what());
  } catch (...) {
    return fail("OpenCASCADE gives no reason");
  }
}
