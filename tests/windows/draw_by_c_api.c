// A program for Microsoft's target that is linked by an import library of the C API, and that needs
// nothing of Microsoft's: it has no C library. Draws a triangle into plan.dxf in the current
// directory, and exits with 0.
#include <ktscene/ktscene_c.h>

__declspec(dllimport) __declspec(noreturn) void ExitProcess(unsigned code);

// Stands for the C library's, which says that the program computes with real numbers.
int _fltused = 0;

static const double kPoints[] = {0, 0, 0, 4, 0, 0, 0, 3, 0};
static const int kCorners[] = {0, 1, 2, KTC_POLYGON};
static KtCLists lists;

static int draw(void) {
  KtCScene* scene = KtCNewScene();
  KtCNode* node = KtCAddNode(scene, NULL);
  lists.size = sizeof lists;
  lists.doubles = kPoints;
  lists.coord_count = 9;
  lists.indices = kCorners;
  lists.index_count = 4;
  int status = KtSceneVersion() == KTSCENE_VERSION ? KTC_OK : KTC_INVALID;
  if (status == KTC_OK) {
    status = KtCSetNames(node, "sail", NULL);
  }
  if (status == KTC_OK) {
    status = KtCAddFaces(node, &lists, 0);
  }
  if (status == KTC_OK) {
    status = KtCDraw(scene, "plan.dxf", NULL);
  }
  KtCFreeScene(scene);
  return status;
}

void start(void) { ExitProcess((unsigned)draw()); }
