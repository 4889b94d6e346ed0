// What the module exports: the entry, and the 13 callbacks under their C++ names. A host enters
// through InitializeTraverser alone; the others are reachable for hosts that drive an export by
// hand.
//
// All run on the host's thread, one at a time. A callback that finds no open file or no current
// node does nothing and answers false. A failed write comes out as CFileException, a lack of memory
// as std::bad_alloc.
#pragma once

#include <string>
#include <vector>

class KtGeometry;
class KtGraphicAttribute;
class KtTraverser;
struct Texture;

#if defined(_WIN32)
#define DXF2D_EXPORT __declspec(dllexport)
#else
#define DXF2D_EXPORT __attribute__((visibility("default")))
#endif

// Registers the callbacks with `traverser` (a null one is left alone). `reserved` is not looked at.
// Always answers true.
extern "C" DXF2D_EXPORT bool InitializeTraverser(KtTraverser* traverser, void* reserved);

// Begins an export into the file at `path`. True when the file stands open with its head written;
// otherwise false, and the reason has been shown in an error box.
DXF2D_EXPORT bool DXF2dOpenFileForModel(const std::u16string& path);
// Writes what the walk left to write, and closes the file. False, without effect, when no export is
// open.
DXF2D_EXPORT bool DXF2dCloseFileForModel();

// Opens a node below the current one and makes it current. `attribute` may be null.
DXF2D_EXPORT void DXF2dOpenNode(KtGraphicAttribute* attribute);
// Makes the parent of the current node current.
DXF2D_EXPORT void DXF2dCloseNode();
// True: the node is drawn as an instance of an earlier one, and counts as opened; the host sends
// nothing of its content and closes it with DXF2dCloseNode. False: the host opens it as usual.
DXF2D_EXPORT bool DXF2DReuseCallback(KtGraphicAttribute* attribute);
DXF2D_EXPORT void DXF2dOpenLODNode(const std::vector<double>& ranges, double distance);
DXF2D_EXPORT void DXF2dCloseLODNode();
DXF2D_EXPORT void DXF2dBBox(const double* min, const double* max, double size);
// `color` points to red, green and blue from 0 to 1, or is null (no effect); the others are not
// read.
DXF2D_EXPORT void DXF2dMaterial(const double* ambient, const double* color, const double* specular,
                                const double* emission, const double* shininess,
                                const double* transparency);
// Multiplies the current node's matrix by `matrix` (16 doubles). Exported, not registered.
DXF2D_EXPORT void DXF2dMatrix(const double* matrix);

// Draws the edges of a face set one by one, each in plan once, through the node's matrix. Only
// `coords`, `coordIndex` and the size of `normals` count. Exported, not registered.
DXF2D_EXPORT bool DXF2dFaceGeometry(
    const std::vector<double>& coords, const std::vector<int>& coordIndex,
    const std::vector<double>& normals, const std::vector<int>& normalIndex,
    const std::vector<double>& texCoords, const std::vector<int>& texIndex, bool reverseOrientation,
    bool closedSurface, bool normalPerVertex, bool convex, const Texture* texture);
// Draws a line set: `coords` as x, y, z triples, `indices` as runs closed by codes
// (geometry/index_codes.h). True also when nothing of it shows in plan.
DXF2D_EXPORT bool DXF2dLineGeometry(const std::vector<double>& coords,
                                    const std::vector<int>& indices);
// Declines every shape, so that the host sends its tessellation.
DXF2D_EXPORT bool DXF2dSpecialGeometry(KtGeometry* geometry, bool flag);
