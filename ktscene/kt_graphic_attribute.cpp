#include "ktscene/kt_graphic_attribute.h"

#include <algorithm>

namespace {

bool readName(const std::u16string& source, std::u16string& name) {
  name = source;
  return !name.empty();
}

}  // namespace

bool KtGraphicAttribute::GetGraphicName(std::u16string& name) const {
  return readName(node_->graphicName, name);
}

bool KtGraphicAttribute::GetObjectID(std::u16string& id) const {
  return readName(node_->objectId, id);
}

bool KtGraphicAttribute::GetRealObjectID(std::u16string& id) const {
  return readName(node_->realObjectId, id);
}

void* KtGraphicAttribute::GetUserData() const { return node_->userData.get(); }

void KtGraphicAttribute::GetMatrix(double* data) const { node_->matrix.GetData(data); }

KtGraphicItem* KtGraphicAttribute::GetGraphicItem(const double* /*matrix*/, bool /*create*/,
                                                  KTV_GRAPHIC_CREATE_TYPE /*type*/) const {
  return node_->hasGraphicItem ? const_cast<KtSceneNode*>(node_) : nullptr;
}

bool KtGraphicAttribute::GetColorOrMaterial(double* color, KtMaterial*& material) const {
  if (node_->color && color != nullptr) {
    std::ranges::copy(*node_->color, color);
  }
  if (node_->material) {
    material = node_->material.get();
  }
  return node_->color.has_value() || node_->material != nullptr;
}
