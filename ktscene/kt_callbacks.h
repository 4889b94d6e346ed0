// The callbacks that a plug-in registers with its host.
#pragma once

#include <string>
#include <vector>

#include "ktscene/kt_graphic_attribute.h"

class KtGeometry;
class KtGraphicNode;
// An opaque host structure, which plug-ins at most pass on.
struct Texture;

// The 20 callback slots, in the order in which KtTraverser::Init takes them.
//
// The following holds for all of them.
//
// Null: any slot may be null. The walk then skips that kind of call.
//
// Lifetime: pointers and references are valid until the callback returns. A plug-in copies what it
// wants to keep, and must not change what it is shown.
//
// Thread: all callbacks of an export run on one thread, that of the call to KtTraverser::Walk, one
// at a time. They carry no context, so a plug-in keeps its session in module-wide state: one walk
// at a time for each loaded module (see KtLoadOptions::isPrivate).
//
// Errors: an exception from a callback passes through KtTraverser::Walk, and no further callback is
// made. The plug-in of this SDK throws CFileException (a std::exception) from slots that write when
// the file cannot be written, and std::bad_alloc.
//
// Units: coordinates and lengths are in drawing units, angles in radians, color components from 0
// to 1.
//
// "Host only" below: KtTraverser never makes the call; only hosts with a walk of their own may.
struct KtCallbacks {
  // Slot 1: a node opens. Called once for each node that slot 3 did not take, before anything else
  // of the node; the matching slot 2 follows after its content and children. The attributes give
  // the node's names, local matrix, color and drawable. Never null in a walk.
  using OpenNode = void (*)(KtGraphicAttribute*);
  OpenNode openNode = nullptr;

  // Slot 2: the node opened last closes. Called exactly once for each slot 1, and once for
  // each slot 3 that returned true.
  using CloseNode = void (*)();
  CloseNode closeNode = nullptr;

  // Slot 3: may this node be drawn as an instance of an earlier one? Called first of all for every
  // node but level-of-detail groups; the attributes are those that slot 1 would get.
  // True: the plug-in has taken the node as an instance. Slot 2 is next, and the node's content and
  // children are skipped. False: slot 1 follows.
  using Reuse = bool (*)(KtGraphicAttribute*);
  Reuse reuse = nullptr;

  // Slot 4: a level-of-detail group opens. Called in place of slots 1 and 3, before its first
  // level, the only one that is walked. `ranges`: the distances at which the levels change, as the
  // scene has them; may be empty. `distance`: that of the viewer; 0 in a walk.
  using OpenLod = void (*)(const std::vector<double>& ranges, double distance);
  OpenLod openLod = nullptr;

  // Slot 5: the level-of-detail group opened last closes. Called once for each slot 4.
  using CloseLod = void (*)();
  CloseLod closeLod = nullptr;

  // Slot 6: the bounds of the open node. Called after slots 1 and 8, only for nodes that have
  // bounds. `min`, `max`: the lower and the upper corner, 3 doubles each, in the node's
  // coordinates. `size`: the length of the diagonal between them.
  using BoundingBox = void (*)(const double* min, const double* max, double size);
  BoundingBox boundingBox = nullptr;

  // Slot 7: the open node has a color or a material of its own. Called after slot 6 and before the
  // geometry and the children, which inherit it.
  // The first four: red, green, blue, 3 doubles each from 0 to 1. The last two: 1 double each, from
  // 0 (dull, opaque) to 1 (shiny, transparent). A plain color comes as `diffuse`, and the other
  // five are null. If a node has both, its color replaces the material's diffuse color. A plug-in
  // ignores null pointers.
  using Material = void (*)(const double* ambient, const double* diffuse, const double* specular,
                            const double* emission, const double* shininess,
                            const double* transparency);
  Material material = nullptr;

  // Slot 8: the local transform of the open node. Called right after slot 1, for every node.
  // `matrix`: 16 doubles, laid out as in KtMatrix. Slot 1's attributes have the same matrix, so
  // most plug-ins leave this slot null.
  using Matrix = void (*)(const double* matrix);
  Matrix matrix = nullptr;

  // Slot 9: a face set with normals and texture. Called for each face set of the open node, and for
  // each shape that slot 14 declined.
  // `coords`: x, y, z triples in the node's coordinates; a remainder of one or two is ignored.
  // `coordIndex`: runs of point numbers, each ended by a KtRunCode.
  // `normals`, `texCoords`: x, y, z and u, v in a row, with indices of the shape of `coordIndex`;
  // all four lists are empty in a walk. `reverseOrientation`: false where counter-clockwise is the
  // front. `closedSurface`: whether the set bounds a solid. `normalPerVertex`, `convex`: false in a
  // walk. `texture`: null in a walk. True: the plug-in took the set. False: slot 10 gets it.
  using FaceGeometry = bool (*)(const std::vector<double>& coords,
                                const std::vector<int>& coordIndex,
                                const std::vector<double>& normals,
                                const std::vector<int>& normalIndex,
                                const std::vector<double>& texCoords,
                                const std::vector<int>& texIndex, bool reverseOrientation,
                                bool closedSurface, bool normalPerVertex, bool convex,
                                const Texture* texture);
  FaceGeometry faceGeometry = nullptr;

  // Slot 10: a face set. Called for each face set of the open node, and for each shape that slot 14
  // declined, unless slot 9 returned true. Arguments as in slot 9.
  // Indices may name points that do not exist, and coordinates need not be finite: a plug-in skips
  // the edges concerned. True: the plug-in took the set, even if it has no edge to draw. False: it
  // did not, since no export is open or one of the lists is empty. The walk ignores the result.
  using FaceSet = bool (*)(const std::vector<double>& coords, const std::vector<int>& indices,
                           bool reverseOrientation, bool closedSurface);
  FaceSet faceSet = nullptr;

  // Slot 11: a line set. Called for each line set of the open node; `coords` and `indices` as in
  // slot 9, and as unreliable as in slot 10.
  // The result is that of slot 10.
  using LineSet = bool (*)(const std::vector<double>& coords, const std::vector<int>& indices);
  LineSet lineSet = nullptr;

  // Slot 12, host only: points of the open node. `coords`: x, y, z triples. `colors`: red, green,
  // blue for each point, or empty. True: the plug-in took them.
  using PointSet = bool (*)(const std::vector<double>& coords, const std::vector<double>& colors);
  PointSet pointSet = nullptr;

  // Slot 13, host only: a graphic node before its content is read. True: the plug-in took it.
  using GraphicNode = bool (*)(KtGraphicNode*);
  GraphicNode graphicNode = nullptr;

  // Slot 14: an analytic shape of the open node, a box or a cylinder. Called in the place of the
  // geometry list where the shape stands. Null is allowed and returns false.
  // The shape gives its type and sizes. The flag is reserved; false in a walk.
  // True: the plug-in took the shape. False: it goes to slots 9 and 10 as a face set.
  using SpecialGeometry = bool (*)(KtGeometry*, bool reserved);
  SpecialGeometry specialGeometry = nullptr;

  // Slot 15, host only: a text of the open node. The flag is reserved. True: the plug-in took it.
  using Text = bool (*)(const std::u16string&, bool reserved);
  Text text = nullptr;

  // Slot 16: the label of the open node. Called for every node, after its geometry and before its
  // children; the graphic node says whether it is a label at all and gives its text. Null is
  // allowed and returns false. The flag is reserved; false in a walk. `colorIndex`: 1 to 255 in the
  // drawing's palette; any other value stands for the color in the label's text; 0 where there is
  // no label. True: the plug-in took the label, even if it drew nothing. False: it did not, since
  // the node has no label, its text does not follow the syntax, or no export is open. The walk
  // ignores the result.
  using Label = bool (*)(KtGraphicNode*, bool reserved, int colorIndex);
  Label label = nullptr;

  // Slot 17, host only: a file of the scene begins; its name. Plug-ins may group what follows by
  // it.
  using Name = void (*)(const std::u16string&);
  Name beginFile = nullptr;

  // Slot 18, host only: the file that slot 17 began ends.
  using Event = void (*)();
  Event endFile = nullptr;

  // Slot 19: an export begins. Called first, once for each walk.
  // `path`: where the plug-in is to write, as passed to KtTraverser::Walk.
  // True: the file is open and the walk begins. False: it could not be created and an error box
  // (ZuErrorBox) has said why; there is no walk and no slot 20.
  using OpenFile = bool (*)(const std::u16string& path);
  OpenFile openFile = nullptr;

  // Slot 20: the export ends. Called last, once for each walk that slot 19 let begin. After a walk
  // that an exception ended, the host calls it itself: whether it returns or throws, the session is
  // over and the file closed.
  // True: the export was open and has ended. False: no export was open. Throws when the remaining
  // bytes cannot be written.
  using CloseFile = bool (*)();
  CloseFile closeFile = nullptr;
};
