// A minimal host: builds a scene of two crates and has a plug-in draw its plan.
//
// usage: minimal_host DRAWING.dxf [PLUGIN]
#include <ktscene/kt_output_file.h>
#include <ktscene/kt_traverser.h>
#include <platform/path_text.h>

#include <cstdio>
#include <exception>

namespace {

// Both ids are needed: objectId has the crate placed in the drawing, realObjectId makes its own
// frame the one that holds the lines. Crates share a graphic name because they look the same: the
// second is then drawn as an instance of the first. A placement may also rotate about z; a scale
// belongs in the sizes, because placements carry none.
KtSceneNode makeCrate(const char16_t* id, double x, double y) {
  KtSceneNode node;
  node.graphicName = u"crate";
  node.objectId = node.realObjectId = id;
  node.matrix.SetTranslation(x, y, 0.0);
  node.geometry.emplace_back(KtBox{2.0, 1.0, 0.5});
  return node;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: minimal_host DRAWING.dxf [PLUGIN]\n");
    return 2;
  }
  try {
    KtTraverser traverser;
    // The plug-in stays loaded.
    traverser.Load(argc == 3 ? argv[2] : DEFAULT_PLUGIN);
    KtScene scene;
    scene.nodes.push_back(makeCrate(u"crate-1", 0.0, 0.0));
    scene.nodes.push_back(makeCrate(u"crate-2", 5.0, 3.0));
    // Gets its name once it is complete, so that a failure never leaves half a drawing.
    KtOutputFile drawing(argv[1]);
    // False: the file cannot be created. An error box, which is a line on standard error unless
    // ZuSetErrorBoxHandler says otherwise, has named the reason.
    if (!traverser.Walk(scene, pathFromBytes(drawing.Path()))) {
      return 1;
    }
    // Not every plug-in draws: one may count, or check.
    if (*traverser.Description().extension != '\0') {
      drawing.Commit();
    }
    return 0;
  } catch (const std::exception& error) {
    // The file could be created and not written, as when the disk is full (CFileException); or no
    // plug-in was loaded (KtTraverserError), or memory has run out.
    std::fprintf(stderr, "minimal_host: %s\n", error.what());
  }
  return 1;
}
