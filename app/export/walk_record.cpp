#include "app/export/walk_record.h"

namespace dxf2d {

namespace {

struct WalkRecord {
  KtCallbacks::Reuse reuse = nullptr;
  KtCallbacks::OpenFile openFile = nullptr;
  std::vector<std::uint8_t> taken;
  bool hasBegun = false;
};

WalkRecord& walkRecord() {
  static WalkRecord record;
  return record;
}

bool recordReuse(KtGraphicAttribute* attribute) {
  const bool isTaken = walkRecord().reuse != nullptr && walkRecord().reuse(attribute);
  walkRecord().taken.push_back(isTaken ? 1 : 0);
  return isTaken;
}

bool recordOpenFile(const std::u16string& path) {
  WalkRecord& record = walkRecord();
  record.hasBegun = record.openFile == nullptr || record.openFile(path);
  return record.hasBegun;
}

}  // namespace

KtTraverser recordingTraverser(const KtTraverser& traverser) {
  const KtCallbacks& own = traverser.Callbacks();
  walkRecord() = {own.reuse, own.openFile, {}};
  KtTraverser recording;
  recording.Init(own.openNode, own.closeNode, recordReuse, own.openLod, own.closeLod,
                 own.boundingBox, own.material, own.matrix, own.faceGeometry, own.faceSet,
                 own.lineSet, own.pointSet, own.graphicNode, own.specialGeometry, own.text,
                 own.label, own.beginFile, own.endFile, recordOpenFile, own.closeFile);
  return recording;
}

const std::vector<std::uint8_t>& takenInstances() { return walkRecord().taken; }

bool hasWalkBegun() { return walkRecord().hasBegun; }

}  // namespace dxf2d
