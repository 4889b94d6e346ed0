// The C API: making a scene.
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "ktscene/c_call.h"
#include "ktscene/c_lists.h"
#include "ktscene/c_scene.h"
#include "ktscene/kt_decompose.h"
#include "ktscene/kt_label.h"
#include "ktscene/utf_text.h"

using dxf2d::cCall;
using dxf2d::cMake;
using dxf2d::require;

namespace {

[[noreturn]] void refuse(const std::string& sentence) { throw std::invalid_argument(sentence); }

std::vector<std::u16string> linesOf(const char* text) {
  std::vector<std::u16string> lines(1);
  for (const char16_t unit : dxf2d::fromUtf8(text)) {
    if (unit == u'\n') {
      lines.emplace_back();
    } else {
      lines.back() += unit;
    }
  }
  return lines;
}

KtLabelContent contentOf(const KtCLabel& label) {
  require(label.text, "KtCSetLabel", "text");
  if (!(label.height > 0.0)) {
    refuse("KtCSetLabel: the height is not above 0; pass one in drawing units");
  }
  const char align = label.align == '\0' ? 'L' : label.align;
  if (align != 'L' && align != 'C' && align != 'R') {
    refuse("KtCSetLabel: the alignment is not L, C or R; pass one of them");
  }
  KtLabelContent content;
  content.width = label.height;
  content.height = label.height;
  content.x = label.x;
  content.y = label.y;
  content.z = label.z;
  content.angle = label.angle;
  content.align = static_cast<char16_t>(align);
  content.red = label.red;
  content.green = label.green;
  content.blue = label.blue;
  content.lines = linesOf(label.text);
  return content;
}

KtMatrix matrixOf(const double* elements, const char* function) {
  require(elements, function, "matrix");
  if (!std::all_of(elements, elements + 16, [](double e) { return std::isfinite(e); })) {
    refuse(std::string(function) + ": an element of the matrix is not finite; pass numbers");
  }
  KtMatrix matrix;
  matrix.Init(elements);
  return matrix;
}

}  // namespace

KtCScene* KtCNewScene() {
  return cMake([] { return new KtCScene; });
}

void KtCFreeScene(KtCScene* scene) { delete scene; }

KtCNode* KtCAddNode(KtCScene* scene, KtCNode* parent) {
  return cMake([&] {
    require(scene, "KtCAddNode", "scene");
    if (parent != nullptr && parent->scene != scene) {
      refuse("KtCAddNode: the parent belongs to another scene; pass a node of this one");
    }
    auto node = std::make_unique<KtCNode>();
    node->scene = scene;
    node->parent = parent;
    node->index = scene->nodes.size();
    return scene->nodes.emplace_back(std::move(node)).get();
  });
}

int KtCSetNames(KtCNode* node, const char* objectId, const char* graphicName) {
  return cCall([&] {
    require(node, "KtCSetNames", "node");
    std::u16string object = dxf2d::fromUtf8(objectId == nullptr ? "" : objectId);
    std::u16string graphic = dxf2d::fromUtf8(graphicName == nullptr ? "" : graphicName);
    std::u16string real = object;
    node->content.objectId = std::move(object);
    node->content.realObjectId = std::move(real);
    node->content.graphicName = std::move(graphic);
  });
}

int KtCSetMatrix(KtCNode* node, const double* matrix) {
  return cCall([&] {
    require(node, "KtCSetMatrix", "node");
    node->content.matrix = matrixOf(matrix, "KtCSetMatrix");
  });
}

int KtCSplitMatrix(const double* matrix, double* placement, double* residual) {
  return cCall([&] {
    require(placement, "KtCSplitMatrix", "placement");
    require(residual, "KtCSplitMatrix", "residual");
    const KtDecomposition parts = KtDecompose(matrixOf(matrix, "KtCSplitMatrix"));
    parts.placement.GetData(placement);
    parts.residual.GetData(residual);
  });
}

int KtCSetColor(KtCNode* node, double red, double green, double blue) {
  return cCall([&] {
    require(node, "KtCSetColor", "node");
    for (const double component : {red, green, blue}) {
      if (!(component >= 0.0 && component <= 1.0)) {
        refuse("KtCSetColor: a component is not within 0 and 1; divide 8-bit colors by 255");
      }
    }
    node->content.color = {red, green, blue};
  });
}

int KtCSetLabel(KtCNode* node, const KtCLabel* label) {
  return cCall([&] {
    require(node, "KtCSetLabel", "node");
    const KtLabelContent content = contentOf(dxf2d::copyStruct(label, "KtCSetLabel", "label"));
    node->content.label = std::make_unique<KtLabel>(KtLabel{KtMakeLabel(content)});
  });
}

int KtCAddFaces(KtCNode* node, const KtCLists* lists, int flags) {
  return cCall([&] {
    require(node, "KtCAddFaces", "node");
    if ((static_cast<unsigned>(flags) & ~(unsigned{KTC_CLOSED} | unsigned{KTC_CLOCKWISE})) != 0) {
      refuse("KtCAddFaces: an unknown flag; pass KTC_CLOSED, KTC_CLOCKWISE, both or 0");
    }
    KtBorrowedFaces faces;
    faces.lists = dxf2d::borrowLists(lists, KTC_POLYGON, "KtCAddFaces");
    faces.closedSurface = (flags & KTC_CLOSED) != 0;
    faces.reverseOrientation = (flags & KTC_CLOCKWISE) != 0;
    if (lists->size >= sizeof *lists && lists->is_lent != 0) {
      node->content.geometry.emplace_back(std::make_shared<const KtBorrowedFaces>(faces));
    } else {
      node->content.geometry.emplace_back(std::make_shared<const KtFaceSet>(KtCopyLists(faces)));
    }
  });
}

int KtCAddLines(KtCNode* node, const KtCLists* lists) {
  return cCall([&] {
    require(node, "KtCAddLines", "node");
    KtBorrowedLines lines;
    lines.lists = dxf2d::borrowLists(lists, KTC_LINE_STRIP, "KtCAddLines");
    if (lists->size >= sizeof *lists && lists->is_lent != 0) {
      node->content.geometry.emplace_back(std::make_shared<const KtBorrowedLines>(lines));
    } else {
      node->content.geometry.emplace_back(std::make_shared<const KtLineSet>(KtCopyLists(lines)));
    }
  });
}

int KtCShareGeometry(KtCNode* node, const KtCNode* other) {
  return cCall([&] {
    require(node, "KtCShareGeometry", "node");
    require(other, "KtCShareGeometry", "other node");
    if (node == other || node->scene != other->scene) {
      refuse("KtCShareGeometry: the other node is the same, or of another scene; pass another one");
    }
    auto& geometry = node->content.geometry;
    geometry.insert(geometry.end(), other->content.geometry.begin(), other->content.geometry.end());
  });
}
