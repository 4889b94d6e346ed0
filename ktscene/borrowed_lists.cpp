#include "ktscene/borrowed_lists.h"

namespace dxf2d {

void copyLists(const KtBorrowedLists& lists, std::vector<double>& coords,
               std::vector<int>& indices) {
  if (lists.floats != nullptr) {
    coords.assign(lists.floats, lists.floats + lists.coordCount);
  } else if (lists.doubles != nullptr) {
    coords.assign(lists.doubles, lists.doubles + lists.coordCount);
  } else {
    coords.clear();
  }
  indices.clear();
  if (lists.indices != nullptr) {
    indices.reserve(lists.indexCount + 1);
    indices.assign(lists.indices, lists.indices + lists.indexCount);
    if (lists.runCode != 0) {
      indices.push_back(lists.runCode);
    }
  }
}

}  // namespace dxf2d

KtFaceSet KtCopyLists(const KtBorrowedFaces& faces) {
  KtFaceSet set;
  dxf2d::copyLists(faces.lists, set.coords, set.indices);
  set.reverseOrientation = faces.reverseOrientation;
  set.closedSurface = faces.closedSurface;
  return set;
}

KtLineSet KtCopyLists(const KtBorrowedLines& lines) {
  KtLineSet set;
  dxf2d::copyLists(lines.lists, set.coords, set.indices);
  return set;
}
