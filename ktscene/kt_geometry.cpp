#include "ktscene/kt_geometry.h"

KtGeometry::~KtGeometry() = default;
