// A host for tests: draws many scene files, each in its code page, by the module at a path.
//
// usage: draw_scenes MODULE LIST
//
// Each line of LIST, UTF-8, is a code page, a scene file and the drawing to make of it, with tabs
// between them. Where an export ends with an exception that is a CFileException (caught here by its
// type, across the libraries), "CFileException: " and its cause go into DRAWING.error; where the
// walk is refused, "KtTraverserError: " and the reason.
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "ktscene/kt_traverser_error.h"
#include "platform/cfile.h"
#include "platform/code_page.h"
#include "platform/path_text.h"
#include "tests/support/loaded_module.h"

namespace {

void note(const std::string& drawing, const std::string& text) {
  CFile file;
  if (file.Open(pathFromBytes(drawing + ".error"), CFile::modeCreate | CFile::modeWrite)) {
    file.Write(text.data(), text.size());
    file.Close();
  }
}

bool draw(const KtTraverser& traverser, const std::string& scenePath, const std::string& drawing) {
  KtScene scene = ReadSceneFile(scenePath);
  try {
    return traverser.Walk(scene, pathFromBytes(drawing));
  } catch (const CFileException& exception) {
    note(drawing, "CFileException: " + std::to_string(exception.m_cause) + "\n");
    // The host ends what it began.
    traverser.Callbacks().closeFile();
    return true;
  } catch (const KtTraverserError& error) {
    // A scene that no plug-in can draw; the message names neither system nor path.
    note(drawing, std::string("KtTraverserError: ") + error.what() + "\n");
    return true;
  }
}

int drawAll(const char* module, const char* listPath) {
  const LoadedModule library(module);
  KtTraverser traverser;
  library.Find<bool(KtTraverser*, void*)>("InitializeTraverser")(&traverser, nullptr);
  std::ifstream list(listPath, std::ios::binary);
  if (!list) {
    throw std::runtime_error(std::string(listPath) + ": cannot be read");
  }
  int failed = 0;
  for (std::string line; std::getline(list, line);) {
    std::istringstream fields(line);
    std::string page;
    std::string scene;
    std::string drawing;
    std::getline(fields, page, '\t');
    std::getline(fields, scene, '\t');
    std::getline(fields, drawing, '\t');
    if (!SetThreadCodePage(static_cast<unsigned>(std::stoul(page))) ||
        !draw(traverser, scene, drawing)) {
      std::cerr << "draw_scenes: " << scene << ": is not drawn\n";
      ++failed;
    }
  }
  return failed == 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: draw_scenes MODULE LIST\n";
    return 2;
  }
  try {
    return drawAll(arguments[1], arguments[2]);
  } catch (const std::exception& error) {
    std::cerr << "draw_scenes: " << error.what() << "\n";
    return 1;
  }
}
