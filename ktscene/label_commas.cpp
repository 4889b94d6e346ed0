#include "ktscene/label_commas.h"

#include <algorithm>
#include <string>
#include <vector>

#include "ktscene/kt_traverser_error.h"
#include "ktscene/kt_v.h"
#include "ktscene/utf_text.h"

namespace dxf2d {

namespace {

// Of a label's text, the tag.
constexpr std::size_t kTagSize = 2;

bool fitsSyntax(const std::u16string& text) {
  double number = 0.0;
  unsigned short align = 0;
  bool frame = false;
  unsigned flags = 0;
  std::vector<std::u16string> lines;
  return KtV::ParseLabelString(text, number, number, number, number, number, number, number, align,
                               frame, number, number, number, flags, lines);
}

bool isMadeWithCommas(const std::u16string& label) {
  // The numbers stand before the first quote; a comma may be the alignment, too.
  const std::size_t end = std::min(label.find(u'"'), label.size());
  if (end <= kTagSize || label.find(u',') >= end) {
    return false;
  }
  const std::u16string text = label.substr(kTagSize);
  if (fitsSyntax(text)) {
    return false;
  }
  std::u16string corrected = text;
  std::replace(corrected.begin(), corrected.begin() + static_cast<std::ptrdiff_t>(end - kTagSize),
               u',', u'.');
  return fitsSyntax(corrected);
}

[[noreturn]] void refuse(const KtSceneNode& node) {
  const std::u16string& name = node.objectId.empty() ? node.graphicName : node.objectId;
  throw KtTraverserError("the label '" + toUtf8(node.label->text) + "' of the node '" +
                         toUtf8(name) +
                         "' has decimal commas, and no plug-in can draw it; write its numbers with "
                         "points, for example under a KtNumericLocale");
}

}  // namespace

void refuseLabelsWithCommas(const KtScene& scene) {
  // Lists of nodes that are still to be looked through.
  struct Rest {
    const KtSceneNode* next;
    const KtSceneNode* end;
  };
  const auto listOf = [](const std::vector<KtSceneNode>& nodes, std::size_t most) {
    return Rest{nodes.data(), nodes.data() + std::min(nodes.size(), most)};
  };
  std::vector<Rest> rests{listOf(scene.nodes, scene.nodes.size())};
  while (!rests.empty()) {
    Rest& rest = rests.back();
    if (rest.next == rest.end) {
      rests.pop_back();
      continue;
    }
    const KtSceneNode& node = *rest.next++;
    if (node.lod) {
      rests.push_back(listOf(node.lod->levels, 1));
      continue;
    }
    if (node.label && isMadeWithCommas(node.label->text)) {
      refuse(node);
    }
    if (!node.children.empty()) {
      rests.push_back(listOf(node.children, node.children.size()));
    }
  }
}

}  // namespace dxf2d
