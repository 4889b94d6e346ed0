// A host in C: a table of two legs and a top, drawn by the plug-in that is installed with KtScene.
//
// usage: c_host DRAWING.dxf [PLUGIN]
#include <ktscene/ktscene_c.h>
#include <stdio.h>

// A unit cube as a viewer has it: floats, and the corners of six quadrilaterals.
static const float kPoints[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0,
                                0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1};
static const int kCorners[] = {0, 3, 2, 1, 4, 5, 6, 7, 0, 1, 5, 4,
                               1, 2, 6, 5, 2, 3, 7, 6, 3, 0, 4, 7};
static const int kCounts[] = {4, 4, 4, 4, 4, 4};

// A scaled and translated box. What a placement in a drawing does not carry, such as the scale,
// goes into the matrix of a child without names, which holds the mesh.
static int addBox(KtCScene* scene, const char* id, const char* look, const double* matrix) {
  double placement[16];
  double residual[16];
  KtCLists lists = {.size = sizeof lists};
  KtCNode* node = KtCAddNode(scene, NULL);
  KtCNode* part = node == NULL ? NULL : KtCAddNode(scene, node);
  lists.floats = kPoints;
  lists.coord_count = sizeof kPoints / sizeof *kPoints;
  lists.indices = kCorners;
  lists.index_count = sizeof kCorners / sizeof *kCorners;
  lists.counts = kCounts;
  lists.count_count = sizeof kCounts / sizeof *kCounts;
  lists.is_lent = 1;
  return part != NULL && KtCSplitMatrix(matrix, placement, residual) == KTC_OK &&
         KtCSetNames(node, id, look) == KTC_OK && KtCSetMatrix(node, placement) == KTC_OK &&
         KtCSetMatrix(part, residual) == KTC_OK &&
         KtCAddFaces(part, &lists, KTC_CLOSED) == KTC_OK;
}

static int build(KtCScene* scene) {
  static const double kLeft[16] = {1, 0, 0, 0, 0, 8, 0, 0, 0, 0, 7, 0, 1, 1, 0, 1};
  static const double kRight[16] = {1, 0, 0, 0, 0, 8, 0, 0, 0, 0, 7, 0, 18, 1, 0, 1};
  static const double kTop[16] = {20, 0, 0, 0, 0, 10, 0, 0, 0, 0, 1, 0, 0, 0, 7, 1};
  KtCLabel label = {.size = sizeof label};
  KtCNode* text = KtCAddNode(scene, NULL);
  label.text = "Table";
  label.height = 1.0;
  label.y = 11.0;
  return text != NULL && KtCSetNames(text, "title", NULL) == KTC_OK &&
         KtCSetColor(text, 1.0, 0.0, 0.0) == KTC_OK && KtCSetLabel(text, &label) == KTC_OK &&
         addBox(scene, "left leg", "leg", kLeft) && addBox(scene, "right leg", "leg", kRight) &&
         addBox(scene, "top", NULL, kTop);
}

int main(int argc, char** argv) {
  KtCDrawOptions options = {.size = sizeof options};
  KtCScene* scene;
  int isDrawn;
  if (argc < 2 || argc > 3) {
    fprintf(stderr, "usage: c_host DRAWING.dxf [PLUGIN]\n");
    return 2;
  }
  options.plugin = argc == 3 ? argv[2] : NULL;
  scene = KtCNewScene();
  isDrawn = scene != NULL && build(scene) && KtCDraw(scene, argv[1], &options) == KTC_OK;
  if (!isDrawn) {
    fprintf(stderr, "c_host: %s\n", KtCErrorText());
  }
  KtCFreeScene(scene);
  return isDrawn ? 0 : 1;
}
