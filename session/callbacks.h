// The callbacks that begin and end an export and that mirror the host's walk.
//
// All callbacks of the plug-in run on the host's thread, one at a time. One that finds no session
// (before the file is opened, after it is closed) or no current node does nothing and returns false
// if it returns anything. After DXF2dOpenFileForModel failed there is a session, but its file is
// closed: a callback that writes throws CFileException then. A failed write throws CFileException
// too, a lack of memory std::bad_alloc. When a callback ends, by return or by exception, what it
// wrote is in the file.
#pragma once

#include <string>
#include <vector>

#include "session/export_macro.h"

class KtGraphicAttribute;

// Begins an export into the file at `path`. Returns whether the file is open, with the head of the
// drawing written; if not, the reason has been shown in an error box.
DXF2D_EXPORT bool DXF2dOpenFileForModel(const std::u16string& path);
// Writes the end of the drawing and closes the file. Returns false, without any effect, when there
// is no session. The session ends in any case, also when a write fails.
DXF2D_EXPORT bool DXF2dCloseFileForModel();

// Opens a node below the current one and makes it current. `attribute` may be null.
DXF2D_EXPORT void DXF2dOpenNode(KtGraphicAttribute* attribute);
// Makes the parent of the current node current.
DXF2D_EXPORT void DXF2dCloseNode();
// Returns true when the node is drawn as an instance of an earlier one: it is then the current
// node, the host sends none of its content and closes it with DXF2dCloseNode. Returns false when
// the host has to open the node as usual.
DXF2D_EXPORT bool DXF2DReuseCallback(KtGraphicAttribute* attribute);
DXF2D_EXPORT void DXF2dOpenLODNode(const std::vector<double>& ranges, double distance);
DXF2D_EXPORT void DXF2dCloseLODNode();
DXF2D_EXPORT void DXF2dBBox(const double* min, const double* max, double size);
// `color` points to red, green and blue from 0 to 1, or is null (no effect); the others are not
// read.
DXF2D_EXPORT void DXF2dMaterial(const double* ambient, const double* color, const double* specular,
                                const double* emission, const double* shininess,
                                const double* transparency);
// Multiplies the current node's matrix by `matrix` (16 doubles; null: no effect). Exported, not
// registered.
DXF2D_EXPORT void DXF2dMatrix(const double* matrix);
