#include "ktscene/kt_graphic_node.h"

KtGraphicNode::~KtGraphicNode() = default;
