// The callbacks that mirror the host's walk as a tree of records, and the reuse of drawings.
#include <string>

#include "dxf/dxf_writer.h"
#include "ktscene/kt_graphic_attribute.h"
#include "ktscene/kt_matrix.h"
#include "session/callbacks.h"
#include "session/export_session.h"
#include "session/plain_instance.h"

namespace {

using dxf2d::BlockNode;
using dxf2d::ExportSession;
using dxf2d::exportSession;

// `world` becomes world x local; `local` points to 16 doubles.
void multiply(KtMatrix& world, const double* local) {
  KtMatrix step;
  step.Init(local);
  world.Mult(step);
}

// The strings that identify a node, and whether the host has them; a read that fails leaves its
// string empty.
struct Identity {
  std::u16string graphicName;
  std::u16string realObjectId;
  std::u16string objectId;
  bool hasGraphicName = false;
  bool hasRealObjectId = false;

  explicit Identity(const KtGraphicAttribute* attribute) {
    if (attribute != nullptr) {
      hasGraphicName = attribute->GetGraphicName(graphicName);
      hasRealObjectId = attribute->GetRealObjectID(realObjectId);
      attribute->GetObjectID(objectId);
    }
  }
};

// Builds a record below the current one, with the next block's number, its parent's color and its
// world matrix. Until it is entered it is not attached and does not use up the number, and its
// texts refer to `identity`.
BlockNode createBlockNode(const ExportSession& session, const KtGraphicAttribute* attribute,
                          const Identity& identity) {
  BlockNode record = *session.currentNode;
  record.blockNumber = session.blockCounter;
  record.parent = session.currentNode;
  record.nextSibling = nullptr;
  record.children = {};
  record.objectId = identity.objectId;
  record.graphicName = identity.graphicName;
  record.realObjectId = identity.realObjectId;
  record.hasGeometry = false;
  record.reservedFlag = false;
  if (attribute != nullptr) {
    double local[16];
    attribute->GetMatrix(local);
    multiply(record.matrix, local);
  }
  return record;
}

// Enters `record`, its texts copied into the session. Texts that are equal share one copy: a host
// often names an object, its frame and its drawing alike, and a million times.
BlockNode* enterRecord(ExportSession& session, BlockNode record, std::u16string_view keptName) {
  record.graphicName = keptName.empty() ? session.tree.Keep(record.graphicName) : keptName;
  const bool sameIds = record.objectId == record.realObjectId;
  record.realObjectId = session.tree.Keep(record.realObjectId);
  record.objectId = sameIds ? record.realObjectId : session.tree.Keep(record.objectId);
  BlockNode* node = session.Enter(record);
  if (!node->realObjectId.empty()) {
    node->frame = node;
  }
  return node;
}

// A node's drawing may be reused when the node is an object with a drawable, seen in plan and
// without a color of its own. Of two with the same name the later one is kept.
void registerForReuse(ExportSession& session, const KtGraphicAttribute& attribute,
                      const Identity& identity, const BlockNode* node) {
  if (!identity.hasRealObjectId) {
    return;
  }
  KtGraphicItem* item = attribute.GetGraphicItem(nullptr, true, KTV_GRAPHIC_CREATE_DEFAULT);
  if (item == nullptr || !isPlainInstance(node, &attribute)) {
    return;
  }
  if (identity.hasGraphicName) {
    session.reuseMap[node->graphicName] = {item, node};
  } else {
    ++session.unnamedReusableCount;
  }
}

}  // namespace

void DXF2dOpenNode(KtGraphicAttribute* attribute) {
  ExportSession& session = exportSession();
  if (session.currentNode == nullptr) {
    return;
  }
  const Identity identity(attribute);
  const BlockNode* node = enterRecord(session, createBlockNode(session, attribute, identity), {});
  if (attribute != nullptr) {
    registerForReuse(session, *attribute, identity, node);
  }
}

bool DXF2DReuseCallback(KtGraphicAttribute* attribute) {
  ExportSession& session = exportSession();
  const Identity identity(attribute);
  if (!identity.hasRealObjectId || !identity.hasGraphicName) {
    return false;
  }
  const auto found = session.reuseMap.find(identity.graphicName);
  if (found == session.reuseMap.end() || session.currentNode == nullptr) {
    return false;
  }
  BlockNode record = createBlockNode(session, attribute, identity);
  if (!isPlainInstance(&record, attribute)) {
    return false;
  }
  record.blockNumber = found->second.second->blockNumber;
  enterRecord(session, record, found->first);
  return true;
}

void DXF2dCloseNode() {
  ExportSession& session = exportSession();
  if (session.currentNode == nullptr) {
    return;
  }
  session.currentNode = session.currentNode->parent;
  session.depth = static_cast<std::int32_t>(static_cast<std::uint32_t>(session.depth) - 1U);
}

void DXF2dMatrix(const double* matrix) {
  const ExportSession& session = exportSession();
  if (session.currentNode != nullptr && matrix != nullptr) {
    multiply(session.currentNode->matrix, matrix);
  }
}

void DXF2dMaterial(const double* /*ambient*/, const double* color, const double* /*specular*/,
                   const double* /*emission*/, const double* /*shininess*/,
                   const double* /*transparency*/) {
  const ExportSession& session = exportSession();
  if (color == nullptr || !session.CanDraw()) {
    return;
  }
  session.currentNode->colorIndex = session.writer->NearestColorIndex(color[0], color[1], color[2]);
}

// Levels of detail and bounding boxes have no effect on a plan, but the slots are filled.
void DXF2dOpenLODNode(const std::vector<double>& /*ranges*/, double /*distance*/) {}

void DXF2dCloseLODNode() {}

void DXF2dBBox(const double* /*min*/, const double* /*max*/, double /*size*/) {}
