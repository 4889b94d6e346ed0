// The entry's name in C++, which is another symbol.
class KtTraverser;

__attribute__((visibility("default"))) bool InitializeTraverser(KtTraverser* traverser,
                                                                void* reserved);

bool InitializeTraverser(KtTraverser* traverser, void* /*reserved*/) {
  return traverser != nullptr;
}
