#include "ktscene/kt_traverser_error.h"

KtTraverserError::~KtTraverserError() = default;
