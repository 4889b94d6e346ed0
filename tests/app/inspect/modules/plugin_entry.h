// The entry of a test's plug-in.
#pragma once

#include "ktscene/kt_traverser.h"

#define PLUGIN_ENTRY                                                          \
  extern "C" __attribute__((visibility("default"))) bool InitializeTraverser( \
      KtTraverser* traverser, void* /*reserved*/)

// Says that a test's plug-in writes no file. One that says nothing is expected to write DXF.
inline void describeAsCounter(KtTraverser& traverser) {
  KtPluginDescription description;
  description.name = "test";
  description.extension = "";
  traverser.Describe(description);
}

// Registers the callbacks that a test's plug-in has.
inline void registerCallbacks(KtTraverser& traverser, const KtCallbacks& given) {
  traverser.Init(given.openNode, given.closeNode, given.reuse, given.openLod, given.closeLod,
                 given.boundingBox, given.material, given.matrix, given.faceGeometry, given.faceSet,
                 given.lineSet, given.pointSet, given.graphicNode, given.specialGeometry,
                 given.text, given.label, given.beginFile, given.endFile, given.openFile,
                 given.closeFile);
}
