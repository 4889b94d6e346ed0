// Loads a plug-in and walks scenes with its callbacks.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "ktscene/export.h"
#include "ktscene/kt_callbacks.h"
#include "ktscene/kt_host.h"
#include "ktscene/kt_reserved.h"
#include "ktscene/kt_scene.h"
#include "ktscene/kt_traverser_error.h"

// What a plug-in says about itself. The caller's struct, of which only the first `size` bytes are
// read, since later versions add members at the end. The texts are UTF-8 and never null.
struct KtPluginDescription {
  // Leave it as it is.
  std::size_t size = sizeof(KtPluginDescription);
  // For messages; empty: the name of the plug-in's file.
  const char* name = "";
  const char* version = "";
  // The extension of the files that it writes: a period and 1 to 15 ASCII letters or digits. Empty:
  // it writes none, since it only counts or checks.
  const char* extension = ".dxf";
  // What these files hold, such as "SVG 1.1".
  const char* format = "DXF";
};

// How KtTraverser::Load loads.
struct KtLoadOptions {
  // Load a copy of the module that no other traverser has, so that exports run in parallel, each
  // with a traverser of its own on a thread of its own. Only the module itself has state of its own
  // (its libraries are shared with the other copies). The copy is unloaded with the last copy of
  // the traverser.
  bool isPrivate = false;
  // The second argument of the plug-in's entry; may be null. Must outlive the traverser.
  const KtHost* host = nullptr;
  KtReserved<4> reserved{};
};

// How KtTraverser::Walk walks.
struct KtWalkOptions {
  // Write numbers with a point, using a KtNumericLocale. False: with the decimal separator of
  // the thread's locale, as when the host calls the slots itself; a drawing with commas is invalid.
  bool usesPoint = true;
  // Refuse a scene with a label whose text would fit the syntax with points for its decimal commas,
  // which no plug-in could draw. False: plug-ins get such labels, and leave them out.
  bool refusesCommas = true;
  // Called before each node that slot 1 or 3 gets, with the number of those before it; may be
  // empty. False cancels: the walk closes the nodes that are open, calls slot 20 and returns false.
  std::function<bool(std::size_t)> progress{};
  KtReserved<8> reserved{};
};

// Holds the callbacks of one plug-in and walks scenes with them. Copies share the loaded module.
// Not safe for use from several threads at a time, except for walks; since a plug-in has one
// session per loaded module, a walk is refused while another uses the same callbacks.
class KT_SCENE_API KtTraverser {
 public:
  // All slots null.
  KtTraverser();
  KtTraverser(const KtTraverser&);
  KtTraverser(KtTraverser&&) noexcept;
  KtTraverser& operator=(const KtTraverser&);
  KtTraverser& operator=(KtTraverser&&) noexcept;
  ~KtTraverser();

  // ---- For hosts

  // Loads the plug-in at `path` (the operating system's bytes) and lets it register its callbacks
  // in place of the present ones. Unless the options say otherwise, the module is shared with
  // others that load it, and stays loaded to the end of the process. Throws KtTraverserError, and
  // changes nothing, when the file is not a plug-in, when the plug-in refuses this program or when
  // it throws.
  void Load(const std::string& path, const KtLoadOptions& options = {});

  // What the plug-in says about itself, or the default if it says nothing.
  // The texts are valid until the traverser changes.
  KtPluginDescription Description() const;

  // Walks `scene` into the file at `path` (UTF-16; see platform/path_text.h): slot 19, the nodes in
  // order, slot 20. Returns false when slot 19 does (there is then no walk and no slot 20), slot 20
  // does, or options.progress does. Exceptions from callbacks pass through unchanged, and no
  // further callback is made. Throws KtTraverserError, with no callback made, when another walk
  // with these callbacks is running, on whatever thread, and for labels with decimal commas.
  bool Walk(const KtScene& scene, const std::u16string& path) const;
  bool Walk(const KtScene& scene, const std::u16string& path, const KtWalkOptions& options) const;

  // Walks one node and what is below it, without the file's callbacks, for hosts that call slots 19
  // and 20 themselves. Takes the thread's locale as it is. Throws KtTraverserError, with no
  // callback made, when another walk with these callbacks is running. Any depth is safe: the walk
  // keeps its place on the heap. For each node:
  //  1. a level-of-detail group: slot 4 (seen from distance 0), its first level, slot 5, and
  //     nothing else;
  //  2. slot 3; when it returns true, slot 2 and nothing of the node's content or children;
  //  3. slot 1; slot 8; slot 6 if the node has bounds; slot 7 if it has a color or material of its
  //     own;
  //  4. the geometry in order: a shape goes to slot 14 and, if declined, on as a face set; a face
  //     set to slot 9 and, unless that returns true, to slot 10; a line set to slot 11;
  //  5. slot 16 with the node's graphic node, false, and its label's color index (0 if none);
  //  6. the children in order; slot 2.
  void WalkNode(const KtSceneNode& node) const;

  // What Init registered, for hosts that make the calls themselves.
  const KtCallbacks& Callbacks() const { return callbacks_; }

  // ---- For plug-ins, in their entry

  // Registers the callbacks, in slot order; each may be null. A second call replaces all of them.
  // The description becomes the default.
  void Init(KtCallbacks::OpenNode openNode, KtCallbacks::CloseNode closeNode,
            KtCallbacks::Reuse reuse, KtCallbacks::OpenLod openLod, KtCallbacks::CloseLod closeLod,
            KtCallbacks::BoundingBox boundingBox, KtCallbacks::Material material,
            KtCallbacks::Matrix matrix, KtCallbacks::FaceGeometry faceGeometry,
            KtCallbacks::FaceSet faceSet, KtCallbacks::LineSet lineSet,
            KtCallbacks::PointSet pointSet, KtCallbacks::GraphicNode graphicNode,
            KtCallbacks::SpecialGeometry specialGeometry, KtCallbacks::Text text,
            KtCallbacks::Label label, KtCallbacks::Name beginFile, KtCallbacks::Event endFile,
            KtCallbacks::OpenFile openFile, KtCallbacks::CloseFile closeFile);

  // Describes the plug-in, after Init; the texts are copied. Optional: without it, hosts assume
  // that the plug-in writes DXF. Returns false, and changes nothing, for a null text or an invalid
  // extension.
  bool Describe(const KtPluginDescription& description);

 private:
  struct State;

  KtCallbacks callbacks_;
  std::unique_ptr<State> state_;
};
