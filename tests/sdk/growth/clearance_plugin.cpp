// A plug-in for 1.1: prints what the host has put into the member that 1.0 lacks.
#include <cstdio>

#include "ktscene/kt_traverser.h"

namespace {

void openNode(KtGraphicAttribute* attribute) { std::printf("%g\n", attribute->GetClearance()); }

}  // namespace

extern "C" __attribute__((visibility("default"))) bool InitializeTraverser(KtTraverser* traverser,
                                                                           void* /*host*/) {
  traverser->Init(openNode, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                  nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                  nullptr, nullptr);
  return true;
}
