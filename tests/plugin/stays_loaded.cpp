// A plug-in that the loader never unloads, and that counts its exports.
#include "ktscene/kt_traverser.h"

namespace {

int exports = 0;

// True for the first export of a copy only.
bool openFile(const std::u16string& /*path*/) { return ++exports == 1; }

}  // namespace

extern "C" __attribute__((visibility("default"))) bool InitializeTraverser(KtTraverser* traverser,
                                                                           void* /*host*/) {
  traverser->Init(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                  nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                  openFile, nullptr);
  return true;
}
