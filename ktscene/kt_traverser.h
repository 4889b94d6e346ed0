// The walk over a scene and the callbacks that a plug-in registers for it.
#pragma once

#include <string>
#include <vector>

#include "ktscene/export.h"
#include "ktscene/kt_scene.h"

class KtGeometry;
class KtGraphicNode;
struct Texture;  // a host structure that no plug-in looks into

// The 20 slots in their order. Any may be null: the walk then skips that kind of call. Pointers and
// references handed to a callback are lent for that call.
struct KtCallbacks {
  using OpenNode = void (*)(KtGraphicAttribute*);
  using CloseNode = void (*)();
  using Reuse = bool (*)(KtGraphicAttribute*);
  using OpenLod = void (*)(const std::vector<double>& ranges, double distance);
  using CloseLod = void (*)();
  using BoundingBox = void (*)(const double* min, const double* max, double size);
  using Material = void (*)(const double* ambient, const double* diffuse, const double* specular,
                            const double* emission, const double* shininess,
                            const double* transparency);
  using Matrix = void (*)(const double* matrix);
  using FaceGeometry = bool (*)(const std::vector<double>& coords,
                                const std::vector<int>& coordIndex,
                                const std::vector<double>& normals,
                                const std::vector<int>& normalIndex,
                                const std::vector<double>& texCoords,
                                const std::vector<int>& texIndex, bool reverseOrientation,
                                bool closedSurface, bool normalPerVertex, bool convex,
                                const Texture* texture);
  using FaceSet = bool (*)(const std::vector<double>& coords, const std::vector<int>& indices,
                           bool reverseOrientation, bool closedSurface);
  using LineSet = bool (*)(const std::vector<double>& coords, const std::vector<int>& indices);
  using PointSet = bool (*)(const std::vector<double>& coords, const std::vector<double>& colours);
  using GraphicNode = bool (*)(KtGraphicNode*);
  using SpecialGeometry = bool (*)(KtGeometry*, bool);
  using Text = bool (*)(const std::u16string&, bool);
  using Label = bool (*)(KtGraphicNode*, bool, int colorIndex);
  using Name = void (*)(const std::u16string&);
  using Event = void (*)();
  using OpenFile = bool (*)(const std::u16string& path);
  using CloseFile = bool (*)();

  OpenNode openNode = nullptr;                // 1
  CloseNode closeNode = nullptr;              // 2
  Reuse reuse = nullptr;                      // 3
  OpenLod openLod = nullptr;                  // 4
  CloseLod closeLod = nullptr;                // 5
  BoundingBox boundingBox = nullptr;          // 6
  Material material = nullptr;                // 7
  Matrix matrix = nullptr;                    // 8
  FaceGeometry faceGeometry = nullptr;        // 9
  FaceSet faceSet = nullptr;                  // 10
  LineSet lineSet = nullptr;                  // 11
  PointSet pointSet = nullptr;                // 12, not part of the walk
  GraphicNode graphicNode = nullptr;          // 13, not part of the walk
  SpecialGeometry specialGeometry = nullptr;  // 14
  Text text = nullptr;                        // 15, not part of the walk
  Label label = nullptr;                      // 16
  Name beginFile = nullptr;                   // 17, not part of the walk
  Event endFile = nullptr;                    // 18, not part of the walk
  OpenFile openFile = nullptr;                // 19
  CloseFile closeFile = nullptr;              // 20
};

// Holds the callbacks and walks scenes with them. Not safe for use from several threads at a time;
// a plug-in keeps one session for the whole process, so only one walk at a time per plug-in.
class KT_SCENE_API KtTraverser {
 public:
  KtTraverser();

  // Registers the callbacks, in slot order.
  void Init(KtCallbacks::OpenNode openNode, KtCallbacks::CloseNode closeNode,
            KtCallbacks::Reuse reuse, KtCallbacks::OpenLod openLod, KtCallbacks::CloseLod closeLod,
            KtCallbacks::BoundingBox boundingBox, KtCallbacks::Material material,
            KtCallbacks::Matrix matrix, KtCallbacks::FaceGeometry faceGeometry,
            KtCallbacks::FaceSet faceSet, KtCallbacks::LineSet lineSet,
            KtCallbacks::PointSet pointSet, KtCallbacks::GraphicNode graphicNode,
            KtCallbacks::SpecialGeometry specialGeometry, KtCallbacks::Text text,
            KtCallbacks::Label label, KtCallbacks::Name beginFile, KtCallbacks::Event endFile,
            KtCallbacks::OpenFile openFile, KtCallbacks::CloseFile closeFile);
  const KtCallbacks& Callbacks() const { return callbacks_; }

  // Walks `scene` into the file at `path` (see platform/path_text.h): slot 19, the nodes in order,
  // slot 20. Answers false when slot 19 does (there is then no walk and no slot 20) or slot 20
  // does. What a callback throws comes out of here as it is, with no further callback made.
  bool Walk(KtScene& scene, const std::u16string& path) const;

  // Walks one node and what is below it, without the file's callbacks. Any depth is safe: the walk
  // keeps its place in memory of its own. For each node:
  //  1. a level-of-detail group: slot 4 (seen from distance 0), its first level, slot 5, and
  //     nothing else;
  //  2. slot 3; when it answers true, slot 2 and nothing of the node's content or children;
  //  3. slot 1; slot 8 if given; slot 6 if the node has bounds (the third argument is the length
  //     of the box's diagonal); slot 7 if it has a colour or material of its own (of a mere colour
  //     only the second argument is not null; where there are both, the colour stands for the
  //     material's diffuse one);
  //  4. the geometry in order: a shape goes to slot 14 and, declined, on as a face set; a face set
  //     to slot 9 if given (without normals and texture; normalPerVertex and convex are false) and,
  //     unless that answers true, to slot 10; a line set to slot 11;
  //  5. slot 16 with the node's graphic node, false, and its label's colour index (0 if none);
  //  6. the children in order; slot 2.
  void WalkNode(KtSceneNode& node) const;

 private:
  KtCallbacks callbacks_;
};
