// KtScene for C, and for languages that call C: builds a scene and has a plug-in draw it.
//
// Texts are UTF-8 and end in a zero byte; paths are the operating system's bytes. Lengths are in
// drawing units. Functions that can fail return a status other than KTC_OK, or a null pointer
// instead of an object, and KtCErrorText() then says why. Nothing is thrown.
//
// A scene and its nodes belong to one thread at a time; several threads may draw one scene as long
// as it does not change, and different scenes are independent.
//
// Example, the plan of a triangle:
//
//   static const float points[] = {0, 0, 0, 4, 0, 0, 0, 3, 0};
//   static const int corners[] = {0, 1, 2};
//   KtCLists lists = {.size = sizeof lists};
//   KtCScene* scene = KtCNewScene();
//   KtCNode* node = KtCAddNode(scene, NULL);
//   lists.floats = points;
//   lists.coord_count = 9;
//   lists.indices = corners;
//   lists.index_count = 3;
//   lists.run_code = KTC_TRIANGLES;
//   if (node == NULL || KtCSetNames(node, "sail", NULL) != KTC_OK ||
//       KtCAddFaces(node, &lists, 0) != KTC_OK ||
//       KtCDraw(scene, "sail.dxf", NULL) != KTC_OK) {
//     fprintf(stderr, "%s\n", KtCErrorText());
//   }
//   KtCFreeScene(scene);
#pragma once

#include <stddef.h>  // NOLINT(modernize-deprecated-headers): for C

#include "ktscene/kt_version.h"

#if defined(__cplusplus)
extern "C" {
#endif

// NOLINTBEGIN(modernize-use-using, readability-identifier-naming): for C, in its style.

// The outcome of a call.
enum {
  KTC_OK = 0,
  // An invalid argument. Nothing was changed.
  KTC_INVALID = 1,
  KTC_NO_MEMORY = 2,
  // The plug-in cannot be loaded, refuses the scene, or fails.
  KTC_PLUGIN_FAILED = 3,
  // The file cannot be written; an earlier file of that name is untouched.
  KTC_NOT_WRITTEN = 4,
  // KtCDrawOptions::progress ended the walk; no file was written.
  KTC_CANCELED = 5
};

// The codes that end runs of indices (ktscene/kt_run_code.h).
enum {
  KTC_SEGMENT = -1,
  KTC_IGNORED = -2,
  KTC_TRIANGLE_STRIP = -3,
  KTC_TRIANGLE_FAN = -4,
  KTC_TRIANGLES = -5,
  KTC_LINE_STRIP = -6,
  KTC_POLYGON = -7
};

// A scene; one that KtCNewScene made belongs to the caller.
typedef struct KtCScene KtCScene;
// Belongs to its scene, and lives as long.
typedef struct KtCNode KtCNode;

// Why the latest failed call on this thread failed: one sentence. Valid until another call on
// this thread fails; empty if none has.
KT_SCENE_API const char* KtCErrorText(void);

// Makes a scene without nodes.
KT_SCENE_API KtCScene* KtCNewScene(void);
// Frees a scene and its nodes; lists lent to it are then free, too. Null is allowed.
KT_SCENE_API void KtCFreeScene(KtCScene* scene);

// Adds a node after the last one of `parent`, or of the scene if that is null.
KT_SCENE_API KtCNode* KtCAddNode(KtCScene* scene, KtCNode* parent);

// Names the object that a drawing places at this node, and what is drawn: nodes that share a
// graphic name must look the same, except for their placement, and may be drawn as instances
// of one block. Null for the graphic name: the node shares with none. A node without names is part
// of the object above it.
KT_SCENE_API int KtCSetNames(KtCNode* node, const char* object_id, const char* graphic_name);

// From the node's coordinates to its parent's: 16 doubles for row vectors, the translation in
// elements 12 to 14. The matrix of a node with an object id should be a placement, that is a
// rotation about z and a translation; KtCSplitMatrix makes one.
KT_SCENE_API int KtCSetMatrix(KtCNode* node, const double* matrix);
// Splits `matrix` so that it equals `residual` first, then `placement`: for an object's node, and
// for a child of it without names that holds what is drawn. 16 doubles each. All matrices that
// differ only by a placement have one residual.
KT_SCENE_API int KtCSplitMatrix(const double* matrix, double* placement, double* residual);

// The node's color, from 0 to 1; children without one inherit it.
KT_SCENE_API int KtCSetColor(KtCNode* node, double red, double green, double blue);

// A text in the drawing. Later versions add members at the end: set `size` to sizeof(KtCLabel) and
// the rest to 0 first.
typedef struct KtCLabel {
  size_t size;  // sizeof(KtCLabel)
  // One or more lines, separated by line feeds; not null.
  const char* text;
  double height;   // of its letters, above 0
  double x, y, z;  // the point that `align` refers to, in the node's coordinates
  double angle;    // in degrees
  // 'L', 'C' or 'R'; 0 means 'L'.
  char align;
  double red, green, blue;  // from 0 to 1
} KtCLabel;
// Gives the node a label, replacing any that it has.
KT_SCENE_API int KtCSetLabel(KtCNode* node, const KtCLabel* label);

// The lists of one mesh or of lines. Later versions add members at the end: set `size` to
// sizeof(KtCLists) and the rest to 0 first.
typedef struct KtCLists {
  size_t size;  // sizeof(KtCLists)
  // x, y, z triples, in one of these two; the other is null. `coord_count` counts numbers.
  const float* floats;
  const double* doubles;
  size_t coord_count;
  // Point numbers, counted from 0, with the codes that end runs; without codes if `run_code` or
  // `counts` gives the runs. (Unsigned 32-bit numbers may be cast to these.)
  const int* indices;
  size_t index_count;
  // The code of the single run that the point numbers are, such as KTC_TRIANGLES, or 0.
  int run_code;
  // How many point numbers each polygon (or, for lines, each line strip) has, or null.
  const int* counts;
  size_t count_count;
  // 0: the lists are copied during the call. Otherwise the scene reads `floats`, `doubles` and,
  // unless `counts` are given, `indices` in place: they must not change until it is freed.
  int is_lent;
} KtCLists;

// Flags for faces: the mesh bounds a solid; clockwise is the front.
enum { KTC_CLOSED = 1, KTC_CLOCKWISE = 2 };

// Adds a mesh, with 0 or more of the flags above, to what the node draws.
KT_SCENE_API int KtCAddFaces(KtCNode* node, const KtCLists* lists, int flags);
// Adds lines to what the node draws.
KT_SCENE_API int KtCAddLines(KtCNode* node, const KtCLists* lists);
// Adds what another node draws so far, without a copy.
KT_SCENE_API int KtCShareGeometry(KtCNode* node, const KtCNode* other);

// Shows what a drawing of the scene would lack or show in the wrong place, one call for each
// finding: whether it is an error or a warning, the node as a JSON pointer such as
// "/nodes/0/children/2", what is wrong and what to do. The texts are valid during the call.
typedef void (*KtCFinding)(void* context, int is_error, const char* node, const char* problem,
                           const char* remedy);
KT_SCENE_API int KtCCheckScene(const KtCScene* scene, KtCFinding finding, void* context);

// Writes the scene as a file (JSON) that dxf2d reads, for bug reports and for exports elsewhere.
KT_SCENE_API int KtCWriteSceneFile(const KtCScene* scene, const char* path);

// How KtCDraw draws. Later versions add members at the end: set `size` to sizeof(KtCDrawOptions)
// and the rest to 0 first.
typedef struct KtCDrawOptions {
  size_t size;  // sizeof(KtCDrawOptions)
  // The plug-in's path. Null: the plug-in that is installed with this library.
  const char* plugin;
  // Called before each node with the number of those before it; 0 cancels. May be null.
  int (*progress)(void* context, size_t nodes);
  void* context;
} KtCDrawOptions;

// Has a plug-in draw the scene into the file at `path`, which is then complete, or as it was before
// on failure. Each call has its own copy of the plug-in, so that threads may draw at the same time.
// Null for `options` means all defaults. A plug-in that writes no files writes none here.
KT_SCENE_API int KtCDraw(const KtCScene* scene, const char* path, const KtCDrawOptions* options);

// NOLINTEND(modernize-use-using, readability-identifier-naming)

#if defined(__cplusplus)
}
#endif
