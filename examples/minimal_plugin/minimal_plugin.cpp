// A minimal plug-in: counts what a walk sends and says so when the walk is over.
#include <ktscene/kt_graphic_node.h>
#include <ktscene/kt_traverser.h>

#include <cstdio>
#include <set>
#include <string>
#include <vector>

namespace {

// The callbacks carry no context, so a plug-in keeps its state in the module: one walk at a time,
// on the host's thread.
struct Counts {
  int nodes = 0;
  int refusedInstances = 0;
  int faceSets = 0;
  int lineSets = 0;
  int labels = 0;
  int materials = 0;
  std::set<std::u16string> graphicNames;
};

Counts counts;

// Slot 19. False would end the walk before it begins.
bool openFile(const std::u16string& /*path*/) {
  counts = {};
  return true;
}

// Slot 20.
bool closeFile() {
  std::printf(
      "nodes %d, instances refused %d, face sets %d, line sets %d, labels %d, materials %d\n",
      counts.nodes, counts.refusedInstances, counts.faceSets, counts.lineSets, counts.labels,
      counts.materials);
  std::fflush(stdout);
  return true;
}

// Slot 3, asked before slot 1. True would say that this node shows what an earlier one of its
// graphic name showed: the host then sends slot 2 and nothing of its content.
bool reuse(KtGraphicAttribute* attribute) {
  std::u16string name;
  if (attribute->GetGraphicName(name) && !counts.graphicNames.insert(name).second) {
    ++counts.refusedInstances;
  }
  return false;
}

void openNode(KtGraphicAttribute* /*attribute*/) { ++counts.nodes; }

void material(const double* /*ambient*/, const double* /*color*/, const double* /*specular*/,
              const double* /*emission*/, const double* /*shininess*/,
              const double* /*transparency*/) {
  ++counts.materials;
}

bool faceSet(const std::vector<double>& /*coords*/, const std::vector<int>& /*indices*/,
             bool /*reverseOrientation*/, bool /*closedSurface*/) {
  ++counts.faceSets;
  return true;
}

bool lineSet(const std::vector<double>& /*coords*/, const std::vector<int>& /*indices*/) {
  ++counts.lineSets;
  return true;
}

// Slot 16, called for every node: most do not have one.
bool label(KtGraphicNode* node, bool /*flag*/, int /*colorIndex*/) {
  if (!node->GetIsLabel()) {
    return false;
  }
  ++counts.labels;
  return true;
}

}  // namespace

// The one entry. What a plug-in does not want stays null, and the host skips it: without slot 14,
// boxes and cylinders arrive as face sets.
extern "C" __attribute__((visibility("default"))) bool InitializeTraverser(KtTraverser* traverser,
                                                                           void* /*reserved*/) {
  traverser->Init(openNode,    // 1
                  nullptr,     // 2 close node
                  reuse,       // 3
                  nullptr,     // 4 open level-of-detail group
                  nullptr,     // 5 close level-of-detail group
                  nullptr,     // 6 bounds
                  material,    // 7
                  nullptr,     // 8 matrix
                  nullptr,     // 9 face geometry
                  faceSet,     // 10
                  lineSet,     // 11
                  nullptr,     // 12 point set
                  nullptr,     // 13 graphic node
                  nullptr,     // 14 analytic shape
                  nullptr,     // 15 text
                  label,       // 16
                  nullptr,     // 17 begin file
                  nullptr,     // 18 end file
                  openFile,    // 19
                  closeFile);  // 20
  // Without a description a host expects a drawing in DXF.
  KtPluginDescription description;
  description.name = "node counter";
  description.version = "1.0";
  description.extension = "";
  description.format = "none";
  return traverser->Describe(description);
}
