#include "session/plain_instance.h"

#include <cmath>

#include "ktscene/kt_graphic_attribute.h"

namespace dxf2d {

namespace {

bool hasOwnColor(const KtGraphicAttribute& attribute) {
  double color[3] = {};
  KtMaterial* material = nullptr;
  return attribute.GetColorOrMaterial(color, material);
}

}  // namespace

bool isPlainInstance(const BlockNode* node, const KtGraphicAttribute* attribute) {
  if ((attribute != nullptr && hasOwnColor(*attribute)) || node == nullptr) {
    return false;
  }
  double aboutX = 0.0;
  double aboutY = 0.0;
  double aboutZ = 0.0;
  node->matrix.GetRotateKoef(&aboutX, &aboutY, &aboutZ);
  return std::fabs(aboutX) + std::fabs(aboutY) <= kPlainTilt;
}

}  // namespace dxf2d
