// What KtScene 1.1 has and 1.0 has not.
#include "ktscene/kt_graphic_attribute.h"

double KtGraphicAttribute::GetClearance() const { return node_->clearance; }
