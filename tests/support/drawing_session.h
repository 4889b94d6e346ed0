// An export into a file of its own, driven by hand through the callbacks.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "geometry/callbacks.h"
#include "ktscene/kt_graphic_attribute.h"
#include "ktscene/kt_scene.h"
#include "plugin/entry.h"
#include "session/callbacks.h"
#include "tests/support/drawing_groups.h"

// What follows the head that every drawing has: from the first block on.
inline std::string bodyOf(const std::string& drawing) {
  const std::string headEnd = "  0\nSECTION\n  2\nBLOCKS\n";
  const std::size_t begin = drawing.find(headEnd);
  if (begin == std::string::npos) {
    throw std::runtime_error("a drawing without BLOCKS");
  }
  return drawing.substr(begin + headEnd.size());
}

// Open from construction to Close, or to its end where a test leaves early.
class DrawingSession {
 public:
  DrawingSession() { EXPECT_TRUE(DXF2dOpenFileForModel(file_.WidePath())); }
  ~DrawingSession() {
    if (!closed_) {
      DXF2dCloseFileForModel();
    }
  }
  DrawingSession(const DrawingSession&) = delete;
  DrawingSession& operator=(const DrawingSession&) = delete;

  // The file as another process would see it now.
  std::string Written() const { return readFile(file_.Path()); }
  // The same without the head.
  std::string Body() const { return bodyOf(Written()); }
  // Ends the export and returns the drawing without its head.
  std::string Close() {
    closed_ = true;
    EXPECT_TRUE(DXF2dCloseFileForModel());
    return Body();
  }

 private:
  TempFile file_;
  bool closed_ = false;
};

// A scene node with the view of it that callbacks get.
class HostNode {
 public:
  HostNode() = default;
  explicit HostNode(std::u16string graphicName, std::u16string objectId = u"",
                    std::u16string realObjectId = u"") {
    node.graphicName = std::move(graphicName);
    node.objectId = std::move(objectId);
    node.realObjectId = std::move(realObjectId);
  }
  HostNode(const HostNode&) = delete;
  HostNode& operator=(const HostNode&) = delete;

  KtGraphicAttribute* Attribute() { return &attribute_; }

  KtSceneNode node;

 private:
  KtGraphicAttribute attribute_{node};
};

// One line of one unit, to give a node something that is drawn.
inline bool drawUnitLine() { return DXF2dLineGeometry({0, 0, 0, 1, 0, 0}, {0, 1, -1}); }

// Opens `host`, draws a line in it when `drawn`, and closes it.
inline void walkLeaf(HostNode& host, bool drawn = true) {
  DXF2dOpenNode(host.Attribute());
  if (drawn) {
    EXPECT_TRUE(drawUnitLine());
  }
  DXF2dCloseNode();
}
